#include <torvan/datamodel/impl/Words.h>

#include <cstring>

namespace torvan::datamodel::words {
namespace {

// Wide registers of the machine at hand; a compiler at -O2 does not use them by itself. The widest
// write whole lines of the caches, but have no short way to tell whether anything is in them.
#ifdef __x86_64__
#define TORVAN_WIDE __attribute__((target_clones("avx2", "default")))
#define TORVAN_WIDEST __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define TORVAN_WIDE
#define TORVAN_WIDEST
#endif

using Lane __attribute__((vector_size(32))) = Word;
constexpr std::size_t laneWords = sizeof(Lane) / sizeof(Word);
using Line __attribute__((vector_size(64))) = Word;
constexpr std::size_t lineWords = sizeof(Line) / sizeof(Word);

template <class Lanes>
[[gnu::always_inline]] inline void load(Lanes& lane, const Word* from) {
  std::memcpy(&lane, from, sizeof lane);
}
[[gnu::always_inline]] inline bool isZero(const Lane& lane) {
  const auto half =
      __builtin_shufflevector(lane, lane, 0, 1) | __builtin_shufflevector(lane, lane, 2, 3);
  return (half[0] | half[1]) == 0;
}

enum class Operation { Join, Meet };

template <Operation operation>
[[gnu::always_inline]] inline void combine(Word* to, const Word* a, const Word* b,
                                           std::size_t count) {
  constexpr bool isJoin = operation == Operation::Join;
  std::size_t i = 0;
  for (; i + lineWords <= count; i += lineWords) {
    Line x, y;
    load(x, a + i), load(y, b + i);
    x = isJoin ? x | y : x & y;
    std::memcpy(to + i, &x, sizeof x);
  }
  for (; i < count; ++i) to[i] = isJoin ? a[i] | b[i] : a[i] & b[i];
}

constexpr std::size_t step = 4 * laneWords;

/// What the first of two sets has and the second lacks, in one step from there.
[[gnu::always_inline]] inline void collectRest(Lane& rest, const Word* a, const Word* b) {
  rest = Lane{};
  for (std::size_t at = 0; at < step; at += laneWords) {
    Lane x, y;
    load(x, a + at), load(y, b + at);
    rest |= x & ~y;
  }
}
/// The same of the words beyond the last step.
[[gnu::always_inline]] inline Word lastRest(const Word* a, const Word* b, std::size_t count) {
  Word rest = 0;
  for (std::size_t i = count - count % step; i < count; ++i) rest |= a[i] & ~b[i];
  return rest;
}
[[gnu::always_inline]] inline bool isIn(const Word* a, const Word* b, std::size_t count) {
  for (std::size_t i = 0; i + step <= count; i += step) {
    Lane rest;
    collectRest(rest, a + i, b + i);
    if (!isZero(rest)) return false;
  }
  return lastRest(a, b, count) == 0;
}
/// Two lanes as a word each, which is 0 where the lane is.
struct Folded {
  Word first, second;
};
[[gnu::always_inline]] inline Folded fold(const Lane& first, const Lane& second) {
  const Lane words = __builtin_shufflevector(first, second, 0, 4, 2, 6) |
                     __builtin_shufflevector(first, second, 1, 5, 3, 7);
  const auto both =
      __builtin_shufflevector(words, words, 0, 1) | __builtin_shufflevector(words, words, 2, 3);
  return {both[0], both[1]};
}

// Calls in the last place, so that the usual way through `compare` needs no frame.

/// What is known from the words before, if also here all of a is in b.
TORVAN_WIDE boolean3 confirm(boolean3 known, const Word* a, const Word* b,
                             std::size_t count) noexcept {
  return isIn(a, b, count) ? known : boolean3::NA;
}
/// For fewer words than a step has.
[[gnu::noinline]] boolean3 compareLast(const Word* a, const Word* b, std::size_t count) noexcept {
  if (lastRest(a, b, count) == 0) return boolean3::T;
  return lastRest(b, a, count) == 0 ? boolean3::F : boolean3::NA;
}

}  // namespace

TORVAN_WIDE
bool isSubset(const Word* a, const Word* b, std::size_t count) noexcept {
  return isIn(a, b, count);
}

/// The first difference tells which of the two can be in the other, if any.
TORVAN_WIDE
boolean3 compare(const Word* a, const Word* b, std::size_t count) noexcept {
  if (a == b) return boolean3::T;
  for (; count >= step; a += step, b += step, count -= step) {
    Lane onlyA, onlyB;
    collectRest(onlyA, a, b);
    collectRest(onlyB, b, a);
    const auto [restOfA, restOfB] = fold(onlyA, onlyB);
    if ((restOfA | restOfB) == 0) continue;
    const bool isLast = count == step;
    if (restOfA == 0)
      return isLast ? boolean3::T : confirm(boolean3::T, a + step, b + step, count - step);
    if (restOfB == 0)
      return isLast ? boolean3::F : confirm(boolean3::F, b + step, a + step, count - step);
    return boolean3::NA;
  }
  return compareLast(a, b, count);
}

TORVAN_WIDEST
void join(Word* to, const Word* a, const Word* b, std::size_t count) noexcept {
  combine<Operation::Join>(to, a, b, count);
}

TORVAN_WIDEST
void meet(Word* to, const Word* a, const Word* b, std::size_t count) noexcept {
  combine<Operation::Meet>(to, a, b, count);
}

}  // namespace torvan::datamodel::words
