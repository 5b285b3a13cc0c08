#pragma once

#include <cstddef>
#include <cstring>

/// Operations on sets that are given as words of 64 bits, all in one pass.
namespace torvan::datamodel::words {

using Word = unsigned long;

/// Whether all of a is in b; stops soon where that is not so.
bool isSubsetThroughout(const Word* a, const Word* b, std::size_t count) noexcept;
/// The same; most sets that are not in another one show it at once.
inline bool isSubset(const Word* a, const Word* b, std::size_t count) noexcept {
  if (count >= 4 && ((a[0] & ~b[0]) | (a[1] & ~b[1]) | (a[2] & ~b[2]) | (a[3] & ~b[3])) != 0)
    return false;
  return isSubsetThroughout(a, b, count);
}
inline bool isEqual(const Word* a, const Word* b, std::size_t count) noexcept {
  return a == b || count == 0 || std::memcmp(a, b, count * sizeof(Word)) == 0;
}
/// Writes the union, or the intersection.
void join(Word* to, const Word* a, const Word* b, std::size_t count) noexcept;
void meet(Word* to, const Word* a, const Word* b, std::size_t count) noexcept;

}  // namespace torvan::datamodel::words
