#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <orb/zero/Hash.h>
#include <torvan/datamodel/boolean3.h>

namespace torvan::datamodel::benchmarks {

using Words = std::vector<std::uint64_t>;

struct Operands {
  std::size_t size;  // in bits
  Words a, b;
};

enum class Operation { Join, Meet, Le, Eq };

/// Two sets in one implementation, and what can be done with them.
class SetPair {
 public:
  virtual ~SetPair() = default;
  /// Does the operation so many times, and drops the results at once.
  virtual void repeat(Operation operation, std::size_t times) = 0;
  /// Ends results that have stayed although they were dropped.
  virtual void finish() {}
  /// The outcome of the operation, as a number.
  virtual std::uint64_t outcome(Operation operation) = 0;
};

/// The pair for an implementation X that has join, meet, le, eq and forEach.
template <class X>
class PairOf : public SetPair {
 public:
  PairOf(X a, X b) : a_(std::move(a)), b_(std::move(b)) {}

  void repeat(Operation operation, std::size_t times) override {
    with(operation, [&](auto run) {
      for (std::size_t i = 0; i < times; ++i) {
        auto result = run();
        benchmark::DoNotOptimize(result);
      }
    });
  }
  std::uint64_t outcome(Operation operation) override {
    std::uint64_t number = 0;
    with(operation, [&](auto run) { number = numberOf(run()); });
    return number;
  }

 private:
  template <class Use>
  void with(Operation operation, Use use) {
    switch (operation) {
      case Operation::Join:
        return use([this] { return a_.join(b_); });
      case Operation::Meet:
        return use([this] { return a_.meet(b_); });
      case Operation::Le:
        return use([this] { return a_.le(b_); });
      case Operation::Eq:
        return use([this] { return a_.eq(b_); });
    }
  }
  static std::uint64_t numberOf(bool answer) { return answer; }
  static std::uint64_t numberOf(boolean3 answer) { return static_cast<std::uint64_t>(answer); }
  static std::uint64_t numberOf(const X& set) {
    std::uint64_t number = 0;
    set.forEach([&](std::size_t bit) { number = orb::zero::hashCombine(number, bit); });
    return number;
  }

  X a_, b_;
};

template <class X>
std::unique_ptr<SetPair> makePair(const Operands& sets) {
  return std::make_unique<PairOf<X>>(X(sets.a, sets.size), X(sets.b, sets.size));
}

/// The answer of `le` from both tests for inclusion.
inline boolean3 comparison(bool isBelow, bool isAbove) {
  return isBelow ? boolean3::T : isAbove ? boolean3::F : boolean3::NA;
}

/// The set bits of the words, in ascending order.
template <class Use>
void forEachBit(const Words& words, Use use) {
  for (std::size_t i = 0; i < words.size(); ++i)
    for (std::uint64_t rest = words[i]; rest != 0; rest &= rest - 1)
      use(i * 64 + static_cast<std::size_t>(__builtin_ctzll(rest)));
}

/// Words from malloc, combined by hand with AVX2 where there is any.
std::unique_ptr<SetPair> makeRawPair(const Operands& sets);
/// boost::dynamic_bitset, built several times with its loops placed differently, which matters.
template <int alignment>
std::unique_ptr<SetPair> makeBoostPair(const Operands& sets);
std::unique_ptr<SetPair> makeBitVectorPair(const Operands& sets);
std::unique_ptr<SetPair> makeSparseBitVectorPair(const Operands& sets);
std::unique_ptr<SetPair> makeRoaringPair(const Operands& sets);

}  // namespace torvan::datamodel::benchmarks
