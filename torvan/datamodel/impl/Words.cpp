#include <torvan/datamodel/impl/Words.h>

#include <cstring>

namespace torvan::datamodel::words {
namespace {

// The widest registers of the machine at hand; a compiler at -O2 does not use them by itself.
#ifdef __x86_64__
#define TORVAN_WIDEST __attribute__((target_clones("avx2", "default")))
#else
#define TORVAN_WIDEST
#endif

using Lane __attribute__((vector_size(32))) = Word;
constexpr std::size_t laneWords = sizeof(Lane) / sizeof(Word);

[[gnu::always_inline]] inline void load(Lane& lane, const Word* from) {
  std::memcpy(&lane, from, sizeof lane);
}
[[gnu::always_inline]] inline bool isZero(const Lane& lane) {
  return (lane[0] | lane[1] | lane[2] | lane[3]) == 0;
}

enum class Operation { Join, Meet };

template <Operation operation>
[[gnu::always_inline]] inline void combine(Word* to, const Word* a, const Word* b,
                                           std::size_t count) {
  constexpr bool isJoin = operation == Operation::Join;
  std::size_t i = 0;
  for (; i + 2 * laneWords <= count; i += 2 * laneWords) {
    Lane x, y, u, v;
    load(x, a + i), load(y, b + i);
    load(u, a + i + laneWords), load(v, b + i + laneWords);
    x = isJoin ? x | y : x & y;
    u = isJoin ? u | v : u & v;
    std::memcpy(to + i, &x, sizeof x);
    std::memcpy(to + i + laneWords, &u, sizeof u);
  }
  for (; i < count; ++i) to[i] = isJoin ? a[i] | b[i] : a[i] & b[i];
}

/// What a has and b lacks, in four lanes from there.
[[gnu::always_inline]] inline void addRest(Lane& rest, const Word* a, const Word* b) {
  for (std::size_t lane = 0; lane < 4; ++lane) {
    Lane x, y;
    load(x, a + lane * laneWords), load(y, b + lane * laneWords);
    rest |= x & ~y;
  }
}

}  // namespace

TORVAN_WIDEST
bool isSubsetThroughout(const Word* a, const Word* b, std::size_t count) noexcept {
  constexpr std::size_t step = 4 * laneWords;
  std::size_t i = 0;
  while (i + step <= count) {
    Lane rest{};
    for (int more = 4; more > 0 && i + step <= count; --more, i += step)
      addRest(rest, a + i, b + i);
    if (!isZero(rest)) return false;
  }
  Word rest = 0;
  for (; i < count; ++i) rest |= a[i] & ~b[i];
  return rest == 0;
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
