#include <torvan/datamodel/LExpression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_STRUCTREF_H
#define TORVAN_DATAMODEL_STRUCTREF_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// The field of a record: `expr.field`.
class TORVAN_DATAMODEL_API StructRef : public orb::zero::Handle<StructRef, LExpression> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& expr() { return property(2); }
  static const Property& field() { return property(3); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Reference expr() const { return StructRef::expr(); }
    query::Primitive<std::string> field() const { return StructRef::field(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_STRUCTREF_H
