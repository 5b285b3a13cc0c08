#include <torvan/datamodel/LExpression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_INDEXREF_H
#define TORVAN_DATAMODEL_INDEXREF_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// A range of an array or of a power set: `expr[startIndex..endIndex]`, from 1 and inclusive.
class TORVAN_DATAMODEL_API IndexRef : public orb::zero::Handle<IndexRef, LExpression> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& expr() { return property(2); }
  static const Property& startIndex() { return property(3); }
  static const Property& endIndex() { return property(4); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Reference expr() const { return IndexRef::expr(); }
    query::Primitive<std::uint16_t> startIndex() const { return IndexRef::startIndex(); }
    query::Primitive<std::uint16_t> endIndex() const { return IndexRef::endIndex(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_INDEXREF_H
