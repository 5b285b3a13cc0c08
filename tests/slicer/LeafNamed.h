#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>

#include "Network.h"

namespace torvan::slicer {

// The index of the leaf with this full name.
inline std::size_t leafNamed(const Network& network, const std::string& name) {
  const auto found = std::ranges::find(network.leaves(), name, &Leaf::name);
  if (found == network.leaves().end()) throw std::out_of_range(name);
  return static_cast<std::size_t>(found - network.leaves().begin());
}

}  // namespace torvan::slicer
