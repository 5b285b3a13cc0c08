#include <torvan/datamodel/LExpression.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_VARIABLE_H
#define TORVAN_DATAMODEL_VARIABLE_H

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// An unknown of a system of equations, with a name and a type. Variables are told apart by
/// identity, not by name.
class TORVAN_DATAMODEL_API Variable : public orb::zero::Handle<Variable, LExpression> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& name() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Primitive<std::string> name() const { return Variable::name(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_VARIABLE_H
