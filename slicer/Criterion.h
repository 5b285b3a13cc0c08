#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>

#include "Signals.h"

namespace torvan::slicer {

/// A criterion that names nothing, or not one thing. The message is one line.
class CriterionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What is sliced by: a leaf block, one of its input ports, or one element of that.
struct Criterion {
  std::size_t leaf = 0;
  std::optional<std::size_t> port;     ///< Index into Leaf::ports.
  std::optional<std::size_t> element;  ///< From 1.
};

/// Finds "NAME", "NAME.inN" or "NAME.inN[K]". NAME is that of a leaf; where there is none, it may
/// leave out enclosing super-blocks or the number behind '#', as long as one leaf fits. Throws
/// CriterionError.
Criterion findCriterion(const Network& network, const Signals& signals, const std::string& text);

}  // namespace torvan::slicer
