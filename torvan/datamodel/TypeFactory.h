#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <orb/zero/Model.h>
#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/PowerSetType.h>
#include <torvan/datamodel/StructType.h>

namespace torvan::datamodel {

class ValueFactory;

/// Makes lattice types with their size, top and bottom.
///
/// What can be refused are elements of another model ("CannotCreateCrossModelAssociation") and a
/// repeated field name ("UniquenessConstraint"), and all types without a value factory
/// ("InvalidValue"); what was made before stays in the model, such as a type without top and
/// bottom.
class TORVAN_DATAMODEL_API TypeFactory {
 public:
  explicit TypeFactory(orb::zero::Model model);

  /// The factory that makes top and bottom values, to be given before the first type is made. It is
  /// not owned and has to live as long as types are made.
  void valueFactory(ValueFactory* factory) noexcept { valueFactory_ = factory; }

  /// Sets over `numElems` elements without names.
  PowerSetType createPowerSetType(const std::string& name, std::uint16_t numElems);
  /// Sets over named elements; the number of names is taken modulo 65536.
  PowerSetType createPowerSetType(const std::string& name,
                                  const std::vector<std::string>& elements);
  /// Records with a field per position of the two vectors, which have equal lengths.
  StructType createStructType(const std::string& name, const std::vector<std::string>& fieldNames,
                              const std::vector<LatticeType>& fieldTypes);
  /// Arrays of `size` elements, which may be none.
  ArrayType createArrayType(const std::string& name, const LatticeType& elemType,
                            std::uint16_t size);

 private:
  ValueFactory& values() const;

  orb::zero::Model model_;
  ValueFactory* valueFactory_ = nullptr;
};

}  // namespace torvan::datamodel
