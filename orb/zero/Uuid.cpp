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

}  // namespace

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
