#pragma once

#include <orb/zero/ImplOf.h>
#include <torvan/datamodel/LatticeType.h>
#include <torvan/datamodel/Term.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Term::Impl : public orb::zero::ImplOf<Term> {
  orb::zero::Slot<LatticeType> type_;

 public:
  static constexpr Table table{Instances::Abstract, "torvan.datamodel.Term",
                               "a216d2be-4290-3237-9058-36305621e5f9",
                               Row{&Impl::type_, "type", 1, "1865689c-5459-30ff-825e-f104f9f0306f",
                                   Ordered | Unique | NoMutator}};

  const LatticeType& getType() const noexcept { return type_; }
  bool hasType() const noexcept { return has<&Impl::type_>(); }
  void basicSetType(const LatticeType& value) { basicSet<&Impl::type_>(value); }
  void setType(const LatticeType& value) { set<&Impl::type_>(value); }
};

}  // namespace torvan::datamodel
