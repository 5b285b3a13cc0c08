#pragma once

#include <cstdint>

namespace orb::zero {

/// Mixes one more 64-bit word into a hash. A sequence starts from 0.
constexpr std::uint64_t hashCombine(std::uint64_t hash, std::uint64_t word) noexcept {
  constexpr std::uint64_t multiplier = 0xc6a4a7935bd1e995;
  word *= multiplier;
  word ^= word >> 47;
  word *= multiplier;
  return (hash ^ word) * multiplier + 0xe6546b64;
}

}  // namespace orb::zero
