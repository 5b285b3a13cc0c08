#include <torvan/datamodel/Expression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_LEXPRESSION_H
#define TORVAN_DATAMODEL_LEXPRESSION_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// An expression that names a place inside a variable's value, and can stand on the left side of an
/// equation. Abstract.
class TORVAN_DATAMODEL_API LExpression : public orb::zero::Handle<LExpression, Expression> {
 public:
  class Impl;
  using Handle::Handle;
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_LEXPRESSION_H
