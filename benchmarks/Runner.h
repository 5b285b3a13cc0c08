#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {

/// What one side takes per item, in the unit of the case.
struct Measured {
  std::string side;
  double least;
  double median;
};

struct Result {
  const Case* of;
  std::size_t rounds;
  std::vector<Measured> sides;

  /// The side of this name, or nothing.
  const Measured* find(const std::string& side) const;
  /// Whether ours is within the target.
  bool meets(const Target& target) const;
};

/// How long a case goes on: until it has taken so much time, and for so many rounds unless these
/// take very long.
struct Effort {
  double seconds;
  std::size_t rounds;
};

/// Makes all sides of the case and measures them in turn: a round has one run of each. The time is
/// that of the thread on its processor. Throws when the sides do not compute the same.
Result measure(const Case& measured, Effort effort);

}  // namespace torvan::datamodel::benchmarks
