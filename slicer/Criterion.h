#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "BlockSystem.h"

namespace torvan::slicer {

/// A criterion that names nothing, or not one thing. The message is one line.
class CriterionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What is sliced by: a block, one of its input ports, or one element of that.
struct Criterion {
  std::size_t block = 0;
  std::optional<std::size_t> port;     ///< Index into SystemBlock::ports.
  std::optional<std::size_t> element;  ///< From 1.
};

/// Finds what is sliced by among the blocks of a system, which have to outlive it.
class CriterionFinder {
 public:
  explicit CriterionFinder(const std::vector<SystemBlock>& blocks);

  /// Finds "NAME", "NAME.inN" or "NAME.inN[K]". NAME is that of a block; where there is none, it
  /// may leave out enclosing super-blocks or the number behind '#', as long as one block fits.
  /// Throws CriterionError.
  Criterion find(const std::string& text) const;

 private:
  std::size_t findBlock(const std::string& name) const;

  const std::vector<SystemBlock>& blocks_;
  std::unordered_map<std::string, std::size_t> places_;
};

}  // namespace torvan::slicer
