#ifndef TORVAN_DATAMODEL_EQUATION_H
#define TORVAN_DATAMODEL_EQUATION_H

#include <string>
#include <vector>

#include <orb/zero/Handle.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

class Variable;

/// States that the place `lhs` receives the value of `rhs`. It is owned by a `System`, if it is
/// part of one.
class TORVAN_DATAMODEL_API Equation : public orb::zero::Handle<Equation, orb::zero::ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  /// The equation as one line of text; see `PrettyPrinter`.
  std::string print() const;
  /// The variable that the left side writes; an empty handle when there is none.
  Variable getLhsVariable() const;
  /// The variables that the right side reads, in the order of their occurrence from left to right,
  /// each as often as it occurs.
  std::vector<Variable> getRhsVariables() const;

  static const Property& lhs() { return property(1); }
  static const Property& rhs() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Reference lhs() const { return Equation::lhs(); }
    query::Reference rhs() const { return Equation::rhs(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_EQUATION_H
