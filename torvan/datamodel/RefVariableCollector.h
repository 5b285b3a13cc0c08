#pragma once

#include <vector>

#include <orb/zero/Visitor.h>
#include <torvan/datamodel/Conditional.h>
#include <torvan/datamodel/IndexRef.h>
#include <torvan/datamodel/Join.h>
#include <torvan/datamodel/Meet.h>
#include <torvan/datamodel/Prune.h>
#include <torvan/datamodel/StructRef.h>
#include <torvan/datamodel/Variable.h>

namespace torvan::datamodel {

/// Finds the variables that an expression mentions: dispatch on the expression, then read the list.
/// The walk is pre-order and from left to right, the control expression of a conditional included;
/// a variable is listed as often as it occurs. Values and empty operands contribute nothing.
/// Nesting of any depth is walked without recursion; an expression that contains itself, or shares
/// parts so often that the walk as good as never ends, raises "CyclicValue". A function that a
/// derived collector adds for a class of its own may dispatch on parts of the element, or visit it
/// as its base: the walk comes to what that holds next. It must not end elements.
class TORVAN_DATAMODEL_API RefVariableCollector : public orb::zero::Visitor<void> {
 public:
  RefVariableCollector();

  /// The variables found so far.
  const std::vector<Variable>& getVariables() const noexcept { return variables_; }
  std::vector<Variable> takeVariables() noexcept { return std::move(variables_); }

  void dispatch(const ModelElement& term);
  /// The same with the function of that class, also for an element of one derived from it.
  void visit(const Variable& variable);
  void visit(const Join& join);
  void visit(const Meet& meet);
  void visit(const StructRef& ref);
  void visit(const IndexRef& ref);
  void visit(const Conditional& conditional);
  void visit(const Prune& prune);

 private:
  using Classes =
      orb::zero::meta::ClassList<Variable, Join, Meet, StructRef, IndexRef, Conditional, Prune>;

  template <class X>
  void enterAs(const X& term);
  void walk(const ModelElement& term);
  void visitNext();
  void enter(const Variable::Impl& variable);
  void enter(const Join::Impl& join);
  void enter(const Meet::Impl& meet);
  void enter(const StructRef::Impl& ref);
  void enter(const IndexRef::Impl& ref);
  void enter(const Conditional::Impl& conditional);
  void enter(const Prune::Impl& prune);
  // Has the walk go on with operands, before what is still to come; the last one first.
  void push(const Term& operand);
  void pushAll(const orb::zero::ReferenceSequence<Term>& operands);

  std::vector<Variable> variables_;
  std::vector<ModelElement::Impl*> pending_;  // the next one last
  bool isWalking_ = false;
};

}  // namespace torvan::datamodel
