#include <torvan/datamodel/ValueTypes.h>

#include <boost/iterator/function_output_iterator.hpp>

std::uint64_t orb::zero::ValueTraits<torvan::datamodel::BitSet>::hash(
    const torvan::datamodel::BitSet& bits) {
  std::uint64_t words = 0;
  boost::to_block_range(bits, boost::make_function_output_iterator([&words](std::uint64_t word) {
                          words = hashCombine(words, word);
                        }));
  return hashCombine(bits.size(), words);
}
