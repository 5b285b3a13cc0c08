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
/// Nesting of any depth is walked without recursion; an expression that contains itself raises
/// "CyclicValue".
class TORVAN_DATAMODEL_API RefVariableCollector : public orb::zero::Visitor<void> {
 public:
  RefVariableCollector();

  /// The variables found so far.
  const std::vector<Variable>& getVariables() const noexcept { return variables_; }
  std::vector<Variable> takeVariables() noexcept { return std::move(variables_); }

  void visit(const Variable& variable);
  void visit(const Join& join);
  void visit(const Meet& meet);
  void visit(const StructRef& ref);
  void visit(const IndexRef& ref);
  void visit(const Conditional& conditional);
  void visit(const Prune& prune);

 private:
  template <class... X>
  void addVisits();
  /// Goes on with these operands, in their order, before what is still to come.
  template <class Operands>
  void descend(const ModelElement& parent, const Operands& operands);
  void walk(const ModelElement& root);

  std::vector<Variable> variables_;
  std::vector<ModelElement::Impl*> pending_;  // the next one last
  bool isWalking_ = false;
};

}  // namespace torvan::datamodel
