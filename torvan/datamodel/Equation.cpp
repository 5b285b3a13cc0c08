#include <torvan/datamodel/Equation.h>

#include <torvan/datamodel/PrettyPrinter.h>
#include <torvan/datamodel/RefVariableCollector.h>

namespace torvan::datamodel {
namespace {

std::vector<Variable> variablesOf(const Term& side) {
  RefVariableCollector collector;
  collector.dispatch(side);
  return collector.takeVariables();
}

}  // namespace

std::string Equation::Impl::print() const { return PrettyPrinter().dispatch(This()); }

Variable Equation::Impl::getLhsVariable() const {
  const std::vector<Variable> variables = variablesOf(lhs_);
  return variables.empty() ? Variable() : variables.front();
}

std::vector<Variable> Equation::Impl::getRhsVariables() const { return variablesOf(rhs_); }

}  // namespace torvan::datamodel
