#pragma once

#include <string_view>

#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/PowerSetType.h>
#include <tyve/Value.h>

namespace torvan::datamodel::hb {

/// The functions of the class "torvan.session.Bits", which has no instances.
struct Bits {
  static constexpr std::string_view hostClass = "torvan.session.Bits";
};

/// The bits of a set over the elements of a type, as the host gives them:
///
/// | given | meaning |
/// |---|---|
/// | texts in a list | names of the universe, each for all elements of the name |
/// | numbers in a list | indices from 1 |
/// | a text such as "101" | all bits, as they print: the last element first |
/// | a text such as "0x5" | a hexadecimal number, the first element being the lowest bit |
/// | one number | such a number, from 0 to 2^53 |
///
/// Raises "InvalidValue" with what is wrong, and "CannotCastIncompatibleTypes" without a type.
BitSet bitsFromHost(const tyve::Value& value, const PowerSetType& type);
/// The same for a set that may have no type: names are not known then, and the length is its own.
BitSet bitsFromHost(const tyve::Value& value, const PowerSet& set);

}  // namespace torvan::datamodel::hb
