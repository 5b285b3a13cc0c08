#pragma once

#include <cstddef>
#include <cstring>

#include <torvan/datamodel/Api.h>
#include <torvan/datamodel/boolean3.h>

/// Operations on sets that are given as words of 64 bits, all in one pass.
namespace torvan::datamodel::words {

using Word = unsigned long;

/// Whether the first words show already that none is in the other, as they mostly do.
inline bool beginApart(const Word* a, const Word* b) noexcept {
  return (a[0] & ~b[0]) != 0 && (b[0] & ~a[0]) != 0;
}
/// Whether all of a is in b; stops soon where that is not so.
bool isSubset(const Word* a, const Word* b, std::size_t count) noexcept;
/// How a lies to b in the order of inclusion; stops soon where neither is in the other.
TORVAN_DATAMODEL_API boolean3 compare(const Word* a, const Word* b, std::size_t count) noexcept;
inline bool isEqual(const Word* a, const Word* b, std::size_t count) noexcept {
  return a == b || std::memcmp(a, b, count * sizeof(Word)) == 0;
}
/// Writes the union, or the intersection.
void join(Word* to, const Word* a, const Word* b, std::size_t count) noexcept;
void meet(Word* to, const Word* a, const Word* b, std::size_t count) noexcept;

}  // namespace torvan::datamodel::words
