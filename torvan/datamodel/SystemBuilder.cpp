#include <torvan/datamodel/SystemBuilder.h>

#include <utility>

namespace torvan::datamodel {

SystemBuilder::SystemBuilder(orb::zero::Model model)
    : model_(std::move(model)), system_(System::Builder(model_).create()) {}

Equation SystemBuilder::addEquation(const LExpression& lhs, const Term& rhs) {
  const orb::zero::Batch batch(model_);
  Equation::Builder builder(model_);
  builder->setLhs(lhs);
  builder->setRhs(rhs);
  Equation equation = builder.create();
  system_->getEquations().add(equation);
  return equation;
}

}  // namespace torvan::datamodel
