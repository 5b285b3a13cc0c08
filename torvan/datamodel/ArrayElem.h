#ifndef TORVAN_DATAMODEL_ARRAYELEM_H
#define TORVAN_DATAMODEL_ARRAYELEM_H

#include <orb/zero/Handle.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

class LatticeValue;

/// One stored element of an `Array`, which owns it: its index (the key, from 1, which cannot be
/// changed once it is made) and its value. The value is a reference: one value may stand in any
/// number of elements.
class TORVAN_DATAMODEL_API ArrayElem
    : public orb::zero::Handle<ArrayElem, orb::zero::ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  /// The slot of the value; see `FieldElem::ref`.
  LatticeValue* ref() const;

  static const Property& index() { return property(1); }
  static const Property& value() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Primitive<std::uint16_t> index() const { return ArrayElem::index(); }
    query::Reference value() const { return ArrayElem::value(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_ARRAYELEM_H
