#include <torvan/datamodel/IndexableValue.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_POWERSET_H
#define TORVAN_DATAMODEL_POWERSET_H

#include <torvan/datamodel/Api.h>
#include <torvan/datamodel/BitSet.h>

namespace torvan::datamodel {

/// A set over the universe of a `PowerSetType`: element k is bit k - 1 of the bit set `value`,
/// whose length should be the type's `numElems`. Join is union, meet is intersection, the order is
/// inclusion, and equal means the same length and the same bits.
///
/// Sets of different lengths: join and meet take the other set at this one's length; in `le` the
/// bits that a set lacks read as 0.
///
/// `at(start, end)` is a new set: of the same type when the range is all of a set that has a type,
/// else of a new anonymous type, the first element of the range being element 1. Bits beyond the
/// length read as 0. `ref(start, end)` refers to the bits of this set.
///
/// Accessors (`->`): `getValue`, `hasValue`, `setValue`. The bits are never saved: a loaded power
/// set is empty and has size 0.
class TORVAN_DATAMODEL_API PowerSet : public orb::zero::Handle<PowerSet, IndexableValue> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& value() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Primitive<BitSet> value() const { return PowerSet::value(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_POWERSET_H
