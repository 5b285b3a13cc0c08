#pragma once

#include <torvan/datamodel/Join.h>
#include <torvan/datamodel/Term.h>
#include <torvan/datamodel/impl/ExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Join::Impl : public orb::zero::ImplOf<Join> {
  orb::zero::ReferenceSequence<Term> operands_{*this, &Join::operands};

 public:
  static constexpr Table table{Instances::Concrete, "torvan.datamodel.Join",
                               "281a888f-375b-3e1d-a5a2-0adcdceed927",
                               Row{&Impl::operands_, "operands", 2,
                                   "c02087b8-dbc0-3d40-9b0f-cd9bb3ded3df", Ordered | NoMutator}};

  orb::zero::ReferenceSequence<Term>& getOperands() noexcept { return operands_; }
  const orb::zero::ReferenceSequence<Term>& getOperands() const noexcept { return operands_; }
  bool hasOperands() const noexcept { return !operands_.empty(); }
};

}  // namespace torvan::datamodel
