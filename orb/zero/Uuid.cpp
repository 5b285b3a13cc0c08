#include <orb/zero/Uuid.h>

#include <atomic>
#include <random>

#include <boost/uuid/name_generator_md5.hpp>

namespace orb::zero {
namespace {

std::uint64_t processSeed() {
  std::random_device entropy;
  return (std::uint64_t{entropy()} << 32) | entropy();
}

/// Where the digits of each byte stand in a text.
constexpr std::uint8_t places[16] = {0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::uint8_t dashes[4] = {8, 13, 18, 23};
constexpr std::string_view digits = "0123456789abcdef";

/// The value of each digit; more than 15 for what is none.
constexpr std::uint8_t noDigit = 0xff;
constexpr auto values = [] {
  std::array<std::uint8_t, 256> table;
  table.fill(noDigit);
  for (std::uint8_t digit = 0; digit < digits.size(); ++digit) {
    const auto c = static_cast<unsigned char>(digits[digit]);
    table[c] = digit;
    if (digit >= 10) table[c - 'a' + 'A'] = digit;
  }
  return table;
}();

}  // namespace

UuidText toText(const uuid& id) noexcept {
  UuidText text;
  for (std::size_t i = 0; i < 16; ++i) {
    text[places[i]] = digits[id.data[i] >> 4];
    text[places[i] + 1u] = digits[id.data[i] & 15];
  }
  for (const std::size_t dash : dashes) text[dash] = '-';
  return text;
}

std::optional<uuid> parseUuid(std::string_view text) noexcept {
  if (text.size() != UuidText().size()) return {};
  std::uint64_t words[2] = {};
  unsigned all = 0;
  for (std::size_t i = 0; i < 16; ++i) {
    const unsigned high = values[static_cast<unsigned char>(text[places[i]])];
    const unsigned low = values[static_cast<unsigned char>(text[places[i] + 1u])];
    all |= high | low;
    words[i / 8] |= std::uint64_t{high * 16 + low} << (i % 8 * 8);
  }
  for (const std::size_t dash : dashes) all |= text[dash] == '-' ? 0 : noDigit;
  if (all > 15) return {};
  uuid id;
  std::memcpy(id.data, words, sizeof words);
  return id;
}

uuid uuidOfName(std::string_view name) {
  static constexpr uuid names = uuidOf("01b7b0d1-47c6-317c-bea5-415e2cc9d1dd");
  return boost::uuids::name_generator_md5(names)(name.data(), name.size());
}

UuidGenerator::UuidGenerator() {
  static std::atomic<std::uint64_t> stream{processSeed()};
  // SplitMix64 turns the process-wide counter into four well-mixed words.
  constexpr std::uint64_t gamma = 0x9E3779B97F4A7C15;
  std::uint64_t seed = stream.fetch_add(4 * gamma, std::memory_order_relaxed);
  for (std::uint64_t& word : state_) {
    std::uint64_t z = seed += gamma;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    word = z ^ (z >> 31);
  }
}

}  // namespace orb::zero
