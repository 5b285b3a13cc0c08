#include <torvan/datamodel/LatticeType.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_POWERSETTYPE_H
#define TORVAN_DATAMODEL_POWERSETTYPE_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// The sets over a universe of `numElems` elements, ordered by inclusion; join is union, meet is
/// intersection. The `universe` may name the elements, in order; it may also be empty.
///
/// Two power-set types are compatible when their sizes are equal.
class TORVAN_DATAMODEL_API PowerSetType : public orb::zero::Handle<PowerSetType, LatticeType> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& universe() { return property(5); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::PrimitiveCollection<std::string> universe() const { return PowerSetType::universe(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_POWERSETTYPE_H
