#include <torvan/datamodel/RefVariableCollector.h>

#include <algorithm>
#include <cstddef>

#include <torvan/datamodel/impl/Walk.h>

namespace torvan::datamodel {

RefVariableCollector::RefVariableCollector() { addVisits(*this, Classes()); }

void RefVariableCollector::dispatch(const ModelElement& term) {
  if (!term) return;
  pending_.push_back(term.get());
  walk(term);
}

template <class X>
void RefVariableCollector::enterAs(const X& term) {
  if (!term) return;
  const auto first = static_cast<std::ptrdiff_t>(pending_.size());
  enter(static_cast<const typename X::Impl&>(*term.get()));
  if (isWalking_) std::reverse(pending_.begin() + first, pending_.end());  // see `visitNext`
  walk(term);
}
void RefVariableCollector::visit(const Variable& variable) { enterAs(variable); }
void RefVariableCollector::visit(const Join& join) { enterAs(join); }
void RefVariableCollector::visit(const Meet& meet) { enterAs(meet); }
void RefVariableCollector::visit(const StructRef& ref) { enterAs(ref); }
void RefVariableCollector::visit(const IndexRef& ref) { enterAs(ref); }
void RefVariableCollector::visit(const Conditional& conditional) { enterAs(conditional); }
void RefVariableCollector::visit(const Prune& prune) { enterAs(prune); }

/// Called in a walk, by a function that was added, it leaves what is pending to that walk.
void RefVariableCollector::walk(const ModelElement& term) {
  if (isWalking_) return;
  isWalking_ = true;
  const auto enters = [this](const auto& element) { return hasFunction(placeFor(element)); };
  try {
    for (Walk walk(term); !pending_.empty(); walk.step(enters)) visitNext();
  } catch (...) {
    pending_.clear();
    isWalking_ = false;
    throw;
  }
  isWalking_ = false;
}

void RefVariableCollector::visitNext() {
  ModelElement::Impl& next = *pending_.back();
  pending_.pop_back();
  if (!next.isAlive()) return;
  const auto visitKnown = [this](auto& known) { enter(known); };
  if (visitAt(placeFor(next), next, Classes(), visitKnown)) return;
  const auto first = static_cast<std::ptrdiff_t>(pending_.size());
  Visitor::dispatch(ModelElement(&next));
  std::reverse(pending_.begin() + first, pending_.end());
}

void RefVariableCollector::push(const Term& operand) {
  if (operand.get()) pending_.push_back(operand.get());
}
void RefVariableCollector::pushAll(const orb::zero::ReferenceSequence<Term>& operands) {
  for (auto operand = operands.end(); operand != operands.begin();) push(*--operand);
}

void RefVariableCollector::enter(const Variable::Impl& variable) {
  variables_.push_back(variable.This());
}
void RefVariableCollector::enter(const Join::Impl& join) { pushAll(join.getOperands()); }
void RefVariableCollector::enter(const Meet::Impl& meet) { pushAll(meet.getOperands()); }
void RefVariableCollector::enter(const StructRef::Impl& ref) { push(ref.getExpr()); }
void RefVariableCollector::enter(const IndexRef::Impl& ref) { push(ref.getExpr()); }
void RefVariableCollector::enter(const Prune::Impl& prune) { push(prune.getExpr()); }
void RefVariableCollector::enter(const Conditional::Impl& conditional) {
  push(conditional.getOperandFalse());
  push(conditional.getOperandTrue());
  push(conditional.getCtrlExpr());
}

}  // namespace torvan::datamodel
