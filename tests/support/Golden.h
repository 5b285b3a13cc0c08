#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace torvan::tests {

/// A file with what never changes.
inline std::string golden(const std::string& name) {
  std::ifstream in(TORVAN_GOLDEN_DIR "/" + name);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace torvan::tests
