#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "benchmarks/SetPair.h"

// Built for AVX2 and without; which one runs is found out when the program starts.
#define TORVAN_VECTORIZED [[gnu::target_clones("avx2", "default")]]

namespace torvan::datamodel::benchmarks {
namespace {

using Word = std::uint64_t;

TORVAN_VECTORIZED void unite(Word* __restrict to, const Word* a, const Word* b, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = a[i] | b[i];
}
TORVAN_VECTORIZED void intersect(Word* __restrict to, const Word* a, const Word* b,
                                 std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = a[i] & b[i];
}

/// Both tests for inclusion in one pass, until both have failed.
TORVAN_VECTORIZED boolean3 compare(const Word* a, const Word* b, std::size_t count) {
  constexpr std::size_t block = 16;
  Word onlyA = 0, onlyB = 0;
  const auto look = [&](std::size_t i) {
    onlyA |= a[i] & ~b[i];
    onlyB |= b[i] & ~a[i];
  };
  std::size_t start = 0;
  for (; start + block <= count && (onlyA == 0 || onlyB == 0); start += block)
    for (std::size_t i = 0; i < block; ++i) look(start + i);
  for (; start < count && (onlyA == 0 || onlyB == 0); ++start) look(start);
  return comparison(onlyA == 0, onlyB == 0);
}

class RawSet {
 public:
  RawSet(const Words& words, std::size_t) : RawSet(words.size()) {
    std::copy(words.begin(), words.end(), words_.get());
  }
  RawSet join(const RawSet& other) const {
    RawSet result(count_);
    unite(result.words_.get(), words_.get(), other.words_.get(), count_);
    return result;
  }
  RawSet meet(const RawSet& other) const {
    RawSet result(count_);
    intersect(result.words_.get(), words_.get(), other.words_.get(), count_);
    return result;
  }
  boolean3 le(const RawSet& other) const {
    return compare(words_.get(), other.words_.get(), count_);
  }
  bool eq(const RawSet& other) const {
    return std::memcmp(words_.get(), other.words_.get(), count_ * sizeof(Word)) == 0;
  }
  template <class Use>
  void forEach(Use use) const {
    forEachBit(Words(words_.get(), words_.get() + count_), use);
  }

 private:
  explicit RawSet(std::size_t count)
      : count_(count), words_(static_cast<Word*>(std::malloc(count * sizeof(Word)))) {}

  struct Free {
    void operator()(Word* words) const noexcept { std::free(words); }
  };
  std::size_t count_;
  std::unique_ptr<Word[], Free> words_;
};

}  // namespace

std::unique_ptr<SetPair> makeRawPair(const Operands& sets) { return makePair<RawSet>(sets); }

}  // namespace torvan::datamodel::benchmarks
