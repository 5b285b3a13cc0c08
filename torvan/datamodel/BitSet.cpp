#include <torvan/datamodel/BitSet.h>

#include <cstddef>
#include <iterator>
#include <vector>

namespace torvan::datamodel {

std::string toHexadecimal(const BitSet& bits) {
  std::vector<BitSet::block_type> words;
  words.reserve(bits.num_blocks());
  to_block_range(bits, std::back_inserter(words));
  std::string digits;
  for (std::size_t digit = (bits.size() + 3) / 4; digit-- > 0;)
    digits += "0123456789abcdef"[words[digit / 16] >> digit % 16 * 4 & 15];
  return digits;
}

}  // namespace torvan::datamodel
