#pragma once

#include <stdexcept>
#include <string>

namespace torvan::slicer {

/// Input that cannot be read as a block diagram. The message is one line that names the file and
/// says what is wrong with it.
class DiagramError : public std::runtime_error {
 public:
  DiagramError(const std::string& file, const std::string& problem)
      : std::runtime_error(file + ": " + problem) {}
};

}  // namespace torvan::slicer
