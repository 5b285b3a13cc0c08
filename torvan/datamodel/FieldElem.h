#ifndef TORVAN_DATAMODEL_FIELDELEM_H
#define TORVAN_DATAMODEL_FIELDELEM_H

#include <orb/zero/Handle.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

class LatticeValue;

/// One stored field of a `Struct`, which owns it: its name (the key, which cannot be changed once
/// it is made) and its value. The value is a reference: one value may stand in any number of
/// fields.
class TORVAN_DATAMODEL_API FieldElem
    : public orb::zero::Handle<FieldElem, orb::zero::ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  /// The slot of the value. A write through it is a plain assignment: it is not checked, not undone
  /// and not announced; the value has to belong to the same model. It is valid as long as the
  /// element lives.
  LatticeValue* ref() const;

  static const Property& name() { return property(1); }
  static const Property& value() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Primitive<std::string> name() const { return FieldElem::name(); }
    query::Reference value() const { return FieldElem::value(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_FIELDELEM_H
