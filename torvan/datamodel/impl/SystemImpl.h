#pragma once

#include <orb/zero/ImplOf.h>
#include <torvan/datamodel/Equation.h>
#include <torvan/datamodel/System.h>
#include <torvan/datamodel/impl/EquationImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API System::Impl : public orb::zero::ImplOf<System> {
  orb::zero::OwnedSequence<Equation> equations_{*this, &System::equations};

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.System", "f657beea-ce4e-39c2-bd39-fc68e7a38959",
      Row{&Impl::equations_, "equations", 1, "f2c66ce1-b92d-3251-ae69-573464c92e45", Ordered}};

  orb::zero::OwnedSequence<Equation>& getEquations() noexcept { return equations_; }
  const orb::zero::OwnedSequence<Equation>& getEquations() const noexcept { return equations_; }
  bool hasEquations() const noexcept { return !equations_.empty(); }
  /// See `ModelElement::Impl::createInto`.
  Equation createIntoEquations(Equation::Builder& builder, const orb::zero::uuid& id) {
    return Equation(createInto(System::equations(), builder, id));
  }
};

}  // namespace torvan::datamodel
