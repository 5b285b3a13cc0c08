#pragma once

#include <boost/dynamic_bitset/dynamic_bitset.hpp>
#include <string>

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// The bits of a power set, in words of 64; bits beyond the length are always 0.
using BitSet = boost::dynamic_bitset<unsigned long>;

/// The bits as a hexadecimal number with all its digits, the first bit being the lowest.
TORVAN_DATAMODEL_API std::string toHexadecimal(const BitSet& bits);

}  // namespace torvan::datamodel
