#pragma once

#include <boost/dynamic_bitset/dynamic_bitset.hpp>

namespace torvan::datamodel {

/// The bits of a power set, in words of 64; bits beyond the length are always 0.
using BitSet = boost::dynamic_bitset<unsigned long>;

}  // namespace torvan::datamodel
