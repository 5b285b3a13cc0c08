#pragma once

#include <cstddef>
#include <cstring>

#include <torvan/datamodel/Api.h>
#include <torvan/datamodel/boolean3.h>

/// Operations on sets that are given as words of 64 bits, all in one pass.
namespace torvan::datamodel::words {

using Word = unsigned long;

/// Whether all of a is in b; stops soon where that is not so.
bool isSubset(const Word* a, const Word* b, std::size_t count) noexcept;
/// How a lies to b in the order of inclusion; told at once where neither is in the other by their
/// first words.
TORVAN_DATAMODEL_API boolean3 compare(const Word* a, const Word* b, std::size_t count) noexcept;
inline bool isEqual(const Word* a, const Word* b, std::size_t count) noexcept {
  return a == b || count == 0 || std::memcmp(a, b, count * sizeof(Word)) == 0;
}
/// Writes the union, or the intersection.
void join(Word* to, const Word* a, const Word* b, std::size_t count) noexcept;
void meet(Word* to, const Word* a, const Word* b, std::size_t count) noexcept;

}  // namespace torvan::datamodel::words
