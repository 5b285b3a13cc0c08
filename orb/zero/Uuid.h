#pragma once

#include <array>
#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include <orb/zero/Api.h>

namespace orb::zero {

using boost::uuids::uuid;

/// The UUID written as 8-4-4-4-12 hexadecimal digits; does not compile for any other text.
consteval uuid uuidOf(std::string_view text) {
  uuid id{};
  std::size_t digits = 0;
  for (const char c : text) {
    if (c == '-') continue;
    const int digit = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
    if (digit < 0 || digits == 32) throw "not a UUID";
    id.data[digits / 2] = static_cast<std::uint8_t>(id.data[digits / 2] * 16 + digit);
    ++digits;
  }
  return digits == 32 ? id : throw "not a UUID";
}

using UuidText = std::array<char, 36>;
/// Its 8-4-4-4-12 hexadecimal digits, in lower case.
ORB_ZERO_API UuidText toText(const uuid& id) noexcept;
/// The same as a string.
inline std::string toString(const uuid& id) {
  const UuidText text = toText(id);
  return {text.begin(), text.end()};
}
/// The UUID that this text stands for, in lower or upper case; nothing for another text.
ORB_ZERO_API std::optional<uuid> parseUuid(std::string_view text) noexcept;

/// The UUID that a name has for good (version 3), in the framework's own namespace of names.
ORB_ZERO_API uuid uuidOfName(std::string_view name);

/// Hash of a UUID that also spreads hand-made ones, which differ in a few bits only.
struct UuidHash {
  std::size_t operator()(const uuid& id) const noexcept {
    std::uint64_t words[2];
    std::memcpy(words, id.data, sizeof words);
    const std::uint64_t mixed = (words[0] ^ (words[1] * 0x9E3779B97F4A7C15)) * 0xBF58476D1CE4E5B9;
    return mixed ^ (mixed >> 32);
  }
};

/// Makes random UUIDs (version 4) by xoshiro256**. Every generator has a stream of its own; all
/// streams of a process come from one draw of the operating system's entropy.
class ORB_ZERO_API UuidGenerator {
 public:
  UuidGenerator();
  uuid operator()() noexcept {
    uuid id;
    fill(id);
    return id;
  }
  /// Writes one where it is to stay.
  void fill(uuid& id) noexcept {
    const std::uint64_t first = (next() & ~versionMask) | version4;
    const std::uint64_t second = (next() & ~variantMask) | variant1;
    std::memcpy(id.data, &first, sizeof first);
    std::memcpy(id.data + sizeof first, &second, sizeof second);
  }

 private:
  // Bytes 6 and 8 of the UUID, seen in little-endian words.
  static constexpr std::uint64_t versionMask = 0x00f0'0000'0000'0000;
  static constexpr std::uint64_t version4 = 0x0040'0000'0000'0000;
  static constexpr std::uint64_t variantMask = 0xc0;
  static constexpr std::uint64_t variant1 = 0x80;

  std::uint64_t next() noexcept {
    const auto rotated = [](std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); };
    const std::uint64_t result = rotated(state_[1] * 5, 7) * 9;
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = rotated(state_[3], 45);
    return result;
  }

  std::uint64_t state_[4];
};

}  // namespace orb::zero
