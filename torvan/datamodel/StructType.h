#include <torvan/datamodel/LatticeType.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_STRUCTTYPE_H
#define TORVAN_DATAMODEL_STRUCTTYPE_H

#include <string>

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// Records with one value per named field, ordered field by field. Its size (`numElems`) is always
/// 1: a record counts as one unit.
///
/// A struct type is compatible with another when the fields that both have are compatible; fields
/// that only one of them has do not matter. So types without a common field are compatible.
class TORVAN_DATAMODEL_API StructType : public orb::zero::Handle<StructType, LatticeType> {
 public:
  class Impl;
  using Handle::Handle;

  /// The type of the field, or an empty handle when there is no such field.
  LatticeType at(const std::string& name) const;

  static const Property& fields() { return property(5); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::ElementCollection fields() const { return StructType::fields(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_STRUCTTYPE_H
