#include <torvan/datamodel/Expression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_PRUNE_H
#define TORVAN_DATAMODEL_PRUNE_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// A record without the field that the path `field` names, from the outermost record inwards; see
/// `Struct::prune`.
class TORVAN_DATAMODEL_API Prune : public orb::zero::Handle<Prune, Expression> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& expr() { return property(2); }
  static const Property& field() { return property(3); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Reference expr() const { return Prune::expr(); }
    query::PrimitiveCollection<std::string> field() const { return Prune::field(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_PRUNE_H
