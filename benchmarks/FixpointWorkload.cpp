#include "benchmarks/FixpointWorkload.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

namespace torvan::datamodel::benchmarks {
namespace {

/// SplitMix64.
class Stream {
 public:
  explicit Stream(std::uint64_t state) : state_(state) {}
  std::uint64_t operator()() {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
  }

 private:
  std::uint64_t state_;
};

std::uint64_t mix(std::uint64_t x) { return Stream(x)(); }

struct Expected {
  FixpointWorkload::Kind kind;
  std::size_t size;
  std::uint64_t evaluations, hash;
};
using enum FixpointWorkload::Kind;
constexpr Expected expectations[] = {
    {Dense, 10'000, 31'022, 0x8581bdf1633aa56d},
    {Dense, 100'000, 183'735, 0x414b27e66111a25f},
    {Dense, 1'000'000, 1'368'981, 0xdb665e4874a2261e},
    {Sparse, 10'000, 179'446, 0xe5e611d45d03b3b7},
    {Sparse, 100'000, 2'408'338, 0x40fbe3c4d58a5947},
    {Sparse, 1'000'000, 12'338'189, 0x0361cbfc86365422},
};

const Expected& expectedOf(FixpointWorkload::Kind kind, std::size_t size) {
  return *std::find_if(
      std::begin(expectations), std::end(expectations),
      [=](const Expected& entry) { return entry.kind == kind && entry.size == size; });
}

}  // namespace

FixpointWorkload::FixpointWorkload(Kind ofKind, std::size_t size) : kind(ofKind), equations(size) {
  Stream next(0x5EED0000 + size);
  for (std::size_t i = 0; i < size; ++i) {
    const auto operand = [&]() -> std::uint32_t {
      const bool isAfter = next() % 10 == 0 && i + 1 < size;
      if (isAfter) return static_cast<std::uint32_t>(i + 1 + next() % (size - 1 - i));
      return i > 0 ? static_cast<std::uint32_t>(next() % i) : 0;
    };
    Equation& equation = equations[i];
    equation.first = operand();
    equation.second = operand();
    equation.constant = {};
    const auto setBit = [&] {
      const std::size_t bit = next() & 255;
      equation.constant[bit / 64] |= std::uint64_t{1} << bit % 64;
    };
    if (kind == Dense)
      for (int count = 0; count < 13; ++count) setBit();
    else if (next() % 64 == 0)
      setBit();
  }
}

std::uint64_t FixpointWorkload::evaluationsOf(Kind kind, std::size_t size) {
  return expectedOf(kind, size).evaluations;
}

void FixpointWorkload::check(std::uint64_t evaluations,
                             const std::vector<SetWords>& solution) const {
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i < solution.size(); ++i)
    for (std::size_t k = 0; k < solution[i].size(); ++k)
      hash += mix(solution[i][k] ^ mix(4 * i + k));
  const Expected& expected = expectedOf(kind, solution.size());
  if (expected.evaluations != evaluations)
    throw std::runtime_error(std::to_string(evaluations) + " evaluations in place of " +
                             std::to_string(expected.evaluations));
  if (expected.hash != hash) throw std::runtime_error("a wrong fixed point");
}

}  // namespace torvan::datamodel::benchmarks
