#include <torvan/datamodel/Term.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_EXPRESSION_H
#define TORVAN_DATAMODEL_EXPRESSION_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// A term that is evaluated: what stands on the right side of an equation, other than a value.
/// Abstract. Expressions are made by `ExpressionFactory`. Operands are references: one expression
/// may be part of many others.
class TORVAN_DATAMODEL_API Expression : public orb::zero::Handle<Expression, Term> {
 public:
  class Impl;
  using Handle::Handle;
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_EXPRESSION_H
