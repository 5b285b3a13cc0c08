#include <torvan/datamodel/IndexableValue.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_ARRAY_H
#define TORVAN_DATAMODEL_ARRAY_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// A value of an `ArrayType`: owned `ArrayElem`s by index, from 1. An index that is not stored
/// reads as the bottom of the array's own type (not of its element type); values made by the
/// factories store every index.
///
/// `at(i)` is the stored value itself. `at(start, end)` of several indices is a new array, with
/// indices from 1, of a new anonymous type, whose elements are the stored values themselves; an
/// empty range gives an array without elements. `ref` refers to the slots of the range; indices
/// that are not stored are stored first, with clones of the array type's bottom.
class TORVAN_DATAMODEL_API Array : public orb::zero::Handle<Array, IndexableValue> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& values() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::ElementCollection values() const { return Array::values(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_ARRAY_H
