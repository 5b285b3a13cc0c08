#pragma once

#include <cstddef>
#include <vector>

namespace orb::zero {

/// Empties the entry at `gap` of a hash table with linear probing and a power of two of entries:
/// moves up those whose probing passed over it. `home(entry)` is where the search for one begins.
template <class Entry, class Home>
void closeGap(std::vector<Entry>& table, std::size_t gap, Home home) noexcept {
  const std::size_t mask = table.size() - 1;
  for (std::size_t at = (gap + 1) & mask; table[at].isTaken(); at = (at + 1) & mask) {
    const std::size_t distance = (at - home(table[at])) & mask;
    if (distance < ((at - gap) & mask)) continue;
    table[gap] = table[at];
    gap = at;
  }
  table[gap] = {};
}

}  // namespace orb::zero
