#include <torvan/datamodel/SystemBuilder.h>

#include <utility>

namespace torvan::datamodel {

SystemBuilder::SystemBuilder(orb::zero::Model model)
    : model_(std::move(model)), system_(System::Builder(model_).create()) {}

Equation SystemBuilder::addEquation(const LExpression& lhs, const Term& rhs) {
  const orb::zero::Batch batch(model_);
  Equation equation = Equation::Impl::make(*model_.operator->(), [&](Equation::Impl& made) {
    made.setLhs(lhs);
    made.setRhs(rhs);
  });
  system_->getEquations().add(equation);
  return equation;
}

}  // namespace torvan::datamodel
