#include <torvan/datamodel/LatticeType.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_ARRAYTYPE_H
#define TORVAN_DATAMODEL_ARRAYTYPE_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// Arrays of `numElems` values of one element type, with indices from 1, ordered index by index.
///
/// Array types are compatible when their sizes are equal and their element types are compatible.
class TORVAN_DATAMODEL_API ArrayType : public orb::zero::Handle<ArrayType, LatticeType> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& elemType() { return property(5); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Reference elemType() const { return ArrayType::elemType(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_ARRAYTYPE_H
