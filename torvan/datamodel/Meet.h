#include <torvan/datamodel/Expression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_MEET_H
#define TORVAN_DATAMODEL_MEET_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// The meet of its operands, in order; see `Join`.
class TORVAN_DATAMODEL_API Meet : public orb::zero::Handle<Meet, Expression> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& operands() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::ElementCollection operands() const { return Meet::operands(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_MEET_H
