#include <torvan/datamodel/RefVariableCollector.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include <torvan/datamodel/impl/Walk.h>

namespace torvan::datamodel {

template <class... X>
void RefVariableCollector::addVisits() {
  (add(X::Uuid(), [this](const ModelElement& element) { visit(X{element}); }), ...);
}

RefVariableCollector::RefVariableCollector() {
  addVisits<Variable, Join, Meet, StructRef, IndexRef, Conditional, Prune>();
}

template <class Operands>
void RefVariableCollector::descend(const ModelElement& parent, const Operands& operands) {
  const auto first = static_cast<std::ptrdiff_t>(pending_.size());
  for (const auto& operand : operands)
    if (operand) pending_.push_back(operand.get());
  std::reverse(pending_.begin() + first, pending_.end());
  if (!isWalking_) walk(parent);  // otherwise the outermost call goes on with them
}

void RefVariableCollector::walk(const ModelElement& root) {
  isWalking_ = true;
  try {
    for (Walk walk(root); !pending_.empty(); walk.step()) {
      const ModelElement next(pending_.back());
      pending_.pop_back();
      dispatch(next);
    }
  } catch (...) {
    pending_.clear();
    isWalking_ = false;
    throw;
  }
  isWalking_ = false;
}

void RefVariableCollector::visit(const Variable& variable) { variables_.push_back(variable); }
void RefVariableCollector::visit(const Join& join) { descend(join, join->getOperands()); }
void RefVariableCollector::visit(const Meet& meet) { descend(meet, meet->getOperands()); }
void RefVariableCollector::visit(const StructRef& ref) { descend(ref, std::array{ref->getExpr()}); }
void RefVariableCollector::visit(const IndexRef& ref) { descend(ref, std::array{ref->getExpr()}); }
void RefVariableCollector::visit(const Prune& prune) {
  descend(prune, std::array{prune->getExpr()});
}
void RefVariableCollector::visit(const Conditional& conditional) {
  descend(conditional,
          std::array<Term, 3>{conditional->getCtrlExpr(), conditional->getOperandTrue(),
                              conditional->getOperandFalse()});
}

}  // namespace torvan::datamodel
