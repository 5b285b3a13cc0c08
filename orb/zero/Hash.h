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

/// The first and the last bytes of a text of 1 to 16 bytes, which overlap.
struct TextEnds {
  explicit TextEnds(std::string_view text) noexcept {
    if (const std::size_t size = text.size(); size >= 8)
      read<std::uint64_t>(text);
    else if (size >= 4)
      read<std::uint32_t>(text);
    else if (size >= 2)
      read<std::uint16_t>(text);
    else
      read<std::uint8_t>(text);
  }
  static bool reach(std::string_view text) noexcept { return text.size() - 1 < 16; }

  std::uint64_t first, last;

 private:
  template <class Word>
  void read(std::string_view text) noexcept {
    Word word;
    std::memcpy(&word, text.data(), sizeof word);
    first = word;
    std::memcpy(&word, text.data() + text.size() - sizeof word, sizeof word);
    last = word;
  }
};

/// Spreads texts over a table. A short one, as names are, is mixed from its two ends.
inline std::uint64_t hashText(std::string_view text) noexcept {
  if (!TextEnds::reach(text)) return std::hash<std::string_view>()(text);
  __extension__ using Wide = unsigned __int128;
  const TextEnds ends(text);
  const Wide product =
      Wide{(ends.first + text.size()) ^ 0x9E3779B97F4A7C15} * (ends.last ^ 0xBF58476D1CE4E5B9);
  return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
}

/// Whether they are equal; without a call for a short one.
inline bool isSameText(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  if (!TextEnds::reach(a)) return a == b;
  const TextEnds mine(a), others(b);
  return ((mine.first ^ others.first) | (mine.last ^ others.last)) == 0;
}

}  // namespace orb::zero
