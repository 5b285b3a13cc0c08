#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace torvan::datamodel::benchmarks {

/// Sets over 256 elements, as words.
using SetWords = std::array<std::uint64_t, 4>;

/// Equations x_i = join(join(x_first, x_second), constant), that are the same in every run. Most
/// operands come before the equation, one in ten after it.
struct FixpointWorkload {
  /// Dense: each constant has about 13 bits. Sparse: one in 64 constants has a single one, so that
  /// the bits travel far.
  enum class Kind { Dense, Sparse };

  struct Equation {
    std::uint32_t first, second;
    SetWords constant;
  };

  FixpointWorkload(Kind kind, std::size_t size);

  /// How many evaluations a workload takes, first in first out.
  static std::uint64_t evaluationsOf(Kind kind, std::size_t size);
  /// Throws when that was not the number of evaluations, or when the words of the solution do not
  /// have the right hash.
  void check(std::uint64_t evaluations, const std::vector<SetWords>& solution) const;

  Kind kind;
  std::vector<Equation> equations;
};

}  // namespace torvan::datamodel::benchmarks
