#include <torvan/datamodel/Expression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_JOIN_H
#define TORVAN_DATAMODEL_JOIN_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// The join of its operands, in order; an operand may repeat. An entry may be empty, if the
/// expression factory was given an empty term.
class TORVAN_DATAMODEL_API Join : public orb::zero::Handle<Join, Expression> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& operands() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::ElementCollection operands() const { return Join::operands(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_JOIN_H
