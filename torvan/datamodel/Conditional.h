#include <torvan/datamodel/Expression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_CONDITIONAL_H
#define TORVAN_DATAMODEL_CONDITIONAL_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// One of two operands, as the control expression decides.
class TORVAN_DATAMODEL_API Conditional : public orb::zero::Handle<Conditional, Expression> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& ctrlExpr() { return property(2); }
  static const Property& operandTrue() { return property(3); }
  static const Property& operandFalse() { return property(4); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Reference ctrlExpr() const { return Conditional::ctrlExpr(); }
    query::Reference operandTrue() const { return Conditional::operandTrue(); }
    query::Reference operandFalse() const { return Conditional::operandFalse(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_CONDITIONAL_H
