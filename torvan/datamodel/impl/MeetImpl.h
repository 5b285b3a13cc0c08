#pragma once

#include <torvan/datamodel/Meet.h>
#include <torvan/datamodel/Term.h>
#include <torvan/datamodel/impl/ExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Meet::Impl : public orb::zero::ImplOf<Meet> {
  orb::zero::ReferenceSequence<Term> operands_{*this, &Meet::operands};

 public:
  static constexpr Table table{Instances::Concrete, "torvan.datamodel.Meet",
                               "427cf1d4-a92f-3e0b-9986-6e2530789850",
                               Row{&Impl::operands_, "operands", 2,
                                   "391ae928-5e07-32f2-9eb7-ce35c00cff4d", Ordered | NoMutator}};

  orb::zero::ReferenceSequence<Term>& getOperands() noexcept { return operands_; }
  const orb::zero::ReferenceSequence<Term>& getOperands() const noexcept { return operands_; }
  bool hasOperands() const noexcept { return !operands_.empty(); }
};

}  // namespace torvan::datamodel
