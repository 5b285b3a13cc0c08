#ifndef TORVAN_DATAMODEL_FIELDTYPE_H
#define TORVAN_DATAMODEL_FIELDTYPE_H

#include <orb/zero/Handle.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// One field of a `StructType`: its name and the type of its values. It is owned by the struct
/// type, whose `fields` are keyed by the name.
///
/// `setName` moves the field to its new key; it raises "UniquenessConstraint" when the struct type
/// has a field of that name. Values, top and bottom included, keep the names they were made with.
class TORVAN_DATAMODEL_API FieldType
    : public orb::zero::Handle<FieldType, orb::zero::ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& name() { return property(1); }
  static const Property& elemType() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Primitive<std::string> name() const { return FieldType::name(); }
    query::Reference elemType() const { return FieldType::elemType(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_FIELDTYPE_H
