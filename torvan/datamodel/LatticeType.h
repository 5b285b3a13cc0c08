#ifndef TORVAN_DATAMODEL_LATTICETYPE_H
#define TORVAN_DATAMODEL_LATTICETYPE_H

#include <orb/zero/Handle.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// A lattice: the abstract domain that a value ranges over. A type knows its size (`numElems`,
/// whose meaning the kind of type decides) and two ready-made values, its least one (`bottom`) and
/// its greatest one (`top`). Types are made by `TypeFactory`; a type without a name is anonymous,
/// such as those that reading a range of a value makes.
///
/// Accessors (`->`): `getName`, `getNumElems`, `getTop`, `getBottom`, their `has…` tests and
/// setters. Changing the size of a type does not rebuild top and bottom. Top and bottom are
/// elements of their own, which outlive the type.
class TORVAN_DATAMODEL_API LatticeType
    : public orb::zero::Handle<LatticeType, orb::zero::ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  /// Whether values of the two types may be combined. Every type is compatible with itself; the
  /// kinds say what else is. Names are never compared. An empty `other` is compatible with none.
  /// Different types that contain themselves raise "CyclicValue".
  bool isCompatible(const LatticeType& other) const;

  static const Property& name() { return property(1); }
  static const Property& numElems() { return property(2); }
  static const Property& top() { return property(3); }
  static const Property& bottom() { return property(4); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Primitive<std::string> name() const { return LatticeType::name(); }
    query::Primitive<std::uint16_t> numElems() const { return LatticeType::numElems(); }
    query::Reference top() const { return LatticeType::top(); }
    query::Reference bottom() const { return LatticeType::bottom(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_LATTICETYPE_H
