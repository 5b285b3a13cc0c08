#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <orb/zero/Model.h>
#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/BitSet.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/Struct.h>
#include <torvan/datamodel/TypeFactory.h>

namespace torvan::datamodel {

/// Makes lattice values. Given values become parts of records and arrays as they are, without a
/// copy; one value may become a part of several.
///
/// What can be refused are elements of another model ("CannotCreateCrossModelAssociation") and a
/// repeated name or index ("UniquenessConstraint"); the value with what was stored before stays in
/// the model.
class TORVAN_DATAMODEL_API ValueFactory {
 public:
  explicit ValueFactory(orb::zero::Model model);

  /// A set with a copy of the bits, whose length is not checked against the type.
  PowerSet createPowerSet(const PowerSetType& type, const BitSet& value);
  /// A record with a field per position of the two vectors, which have equal lengths. Names are not
  /// checked against the type.
  Struct createStruct(const StructType& type, const std::vector<std::string>& names,
                      const std::vector<LatticeValue>& values);
  /// An array with an element per position of the two vectors, which have equal lengths. Indices
  /// are not checked against the type.
  Array createArray(const ArrayType& type, const std::vector<std::uint16_t>& indices,
                    const std::vector<LatticeValue>& values);

 private:
  orb::zero::Model model_;
};

}  // namespace torvan::datamodel
