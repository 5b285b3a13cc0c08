#include "FixpointSolver.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

namespace torvan::slicer {

using namespace datamodel;

/// Evaluates terms bottom-up.
class FixpointSolver::Evaluator : public orb::zero::Visitor<LatticeValue> {
 public:
  explicit Evaluator(FixpointSolver& solver) : solver_(solver) {
    addEvaluations<LatticeValue, Variable, StructRef, IndexRef, Join, Meet, Conditional, Prune>();
  }

 private:
  template <class... X>
  void addEvaluations() {
    (add(X::Uuid(), [this](const ModelElement& element) { return value(X{element}); }), ...);
  }

  LatticeValue value(const LatticeValue& constant) { return constant; }
  LatticeValue value(const Variable& variable) {
    const LatticeValue& value = solver_.variables_[solver_.indexOf(variable)].value;
    return value ? value : variable->getType()->getBottom();
  }
  LatticeValue value(const StructRef& ref) {
    return Struct{dispatch(ref->getExpr())}.at(ref->getField());
  }
  LatticeValue value(const IndexRef& ref) {
    return IndexableValue{dispatch(ref->getExpr())}.at(ref->getStartIndex(), ref->getEndIndex());
  }
  LatticeValue value(const Join& join) {
    return fold(join->getOperands(), [](const auto& a, const auto& b) { return a.join(b); });
  }
  LatticeValue value(const Meet& meet) {
    return fold(meet->getOperands(), [](const auto& a, const auto& b) { return a.meet(b); });
  }
  LatticeValue value(const Conditional& conditional) {
    return dispatch(conditional->getOperandTrue())
        .join(dispatch(conditional->getOperandFalse()))
        .join(dispatch(conditional->getCtrlExpr()));
  }
  LatticeValue value(const Prune& prune) {
    const auto& path = prune->getField();
    return Struct{dispatch(prune->getExpr())}.prune({path.begin(), path.end()});
  }

  template <class Operands, class Operation>
  LatticeValue fold(const Operands& operands, Operation operation) {
    LatticeValue result;
    for (const Term& operand : operands) {
      if (!operand) continue;
      const LatticeValue next = dispatch(operand);
      result = result ? operation(result, next) : next;
    }
    return result;
  }

  FixpointSolver& solver_;
};

FixpointSolver::FixpointSolver(System system) : system_(std::move(system)) {
  for (const Equation& equation : system_->getEquations()) {
    if (!equation.getLhsVariable()) continue;  // it writes nothing
    rules_.push_back({equation, indexOf(equation.getLhsVariable())});
    for (const Variable& variable : equation.getRhsVariables()) {
      auto& readers = variables_[indexOf(variable)].readers;
      if (readers.empty() || readers.back() != rules_.size() - 1)
        readers.push_back(rules_.size() - 1);
    }
  }
  statistics_.equations = rules_.size();
  statistics_.variables = variables_.size();
}

std::size_t FixpointSolver::indexOf(const Variable& variable) {
  const auto [found, isNew] = indices_.try_emplace(variable, variables_.size());
  if (isNew) variables_.emplace_back();
  return found->second;
}

void FixpointSolver::solve(const Progress& progress) {
  std::deque<std::size_t> pending;
  for (std::size_t rule = 0; rule < rules_.size(); ++rule) {
    rules_[rule].isPending = true;
    pending.push_back(rule);
  }
  while (!pending.empty()) {
    Rule& rule = rules_[pending.front()];
    pending.pop_front();
    rule.isPending = false;
    if (apply(rule)) {
      for (const std::size_t reader : variables_[rule.writes].readers)
        if (!std::exchange(rules_[reader].isPending, true)) pending.push_back(reader);
    }
    reclaim();
    if (++statistics_.evaluations % 1024 == 0 && progress) progress(statistics_, pending.size());
  }
}

LatticeValue FixpointSolver::evaluate(const Term& term) { return Evaluator(*this).dispatch(term); }

/// Finds the place that an assignable expression names; empty places on the way become bottom.
class FixpointSolver::Placer : public orb::zero::Visitor<std::optional<Ref>> {
 public:
  explicit Placer(FixpointSolver& solver) : solver_(solver) {
    add(Variable::Uuid(), [this](const ModelElement& element) -> Ref {
      return &solver_.variables_[solver_.indexOf(Variable{element})].value;
    });
    add(StructRef::Uuid(), [this](const ModelElement& element) {
      const StructRef ref{element};
      return inner(ref).ref(ref->getField(), bottomOf(ref));
    });
    add(IndexRef::Uuid(), [this](const ModelElement& element) {
      const IndexRef ref{element};
      return inner(ref).ref(ref->getStartIndex(), ref->getEndIndex(), bottomOf(ref));
    });
  }

 private:
  template <class Selection>
  Ref inner(const Selection& selection) const {
    return dispatch(selection->getExpr()).value();
  }
  template <class Selection>
  static LatticeValue bottomOf(const Selection& selection) {
    return selection->getExpr()->getType()->getBottom();
  }

  FixpointSolver& solver_;
};

bool FixpointSolver::apply(const Rule& rule) {
  const LatticeValue value = evaluate(rule.equation->getRhs());
  if (!value) return false;
  Ref target = Placer(*this).dispatch(rule.equation->getLhs()).value();
  return target.update(value, [](Ref& place, const LatticeValue& more) {
    const LatticeValue before = place.deref();
    if (before && more.le(before) == boolean3::T) return false;
    place.assign(before ? before.join(more) : more.clone());
    return true;
  });
}

void FixpointSolver::reclaim() {
  const orb::zero::Model model = system_->getModel();
  if (model.size() < reclaimAt_) return;
  statistics_.reclaimed += model.reclaim();
  reclaimAt_ = std::max<std::size_t>(4096, 2 * model.size());
}

}  // namespace torvan::slicer
