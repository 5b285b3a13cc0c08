#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>

namespace orb::zero {

/// Mixes one more 64-bit word into a hash. A sequence starts from 0.
constexpr std::uint64_t hashCombine(std::uint64_t hash, std::uint64_t word) noexcept {
  constexpr std::uint64_t multiplier = 0xc6a4a7935bd1e995;
  word *= multiplier;
  word ^= word >> 47;
  word *= multiplier;
  return (hash ^ word) * multiplier + 0xe6546b64;
}

/// Spreads texts over a table. A short one, as names are, is mixed from its two ends, which
/// overlap.
inline std::uint64_t hashText(std::string_view text) noexcept {
  const char* const bytes = text.data();
  const std::size_t size = text.size();
  const auto mix = [=](auto first, auto last) {
    std::memcpy(&first, bytes, sizeof first);
    std::memcpy(&last, bytes + size - sizeof last, sizeof last);
    const std::uint64_t word = (first + size) * 0x9E3779B97F4A7C15;
    return (word ^ (word >> 32) ^ last) * 0xBF58476D1CE4E5B9;
  };
  if (size > 16) return std::hash<std::string_view>()(text);
  if (size >= 8) return mix(std::uint64_t{}, std::uint64_t{});
  if (size >= 4) return mix(std::uint32_t{}, std::uint32_t{});
  if (size >= 2) return mix(std::uint16_t{}, std::uint16_t{});
  return size == 1 ? mix(std::uint8_t{}, std::uint8_t{}) : 0;
}

}  // namespace orb::zero
