#pragma once

#include <string>

#include <torvan/datamodel/PowerSetType.h>
#include <torvan/datamodel/impl/LatticeTypeImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API PowerSetType::Impl : public orb::zero::ImplOf<PowerSetType> {
  orb::zero::PrimitiveSequence<std::string> universe_{*this, &PowerSetType::universe};

 public:
  static constexpr Table table{Instances::Concrete, "torvan.datamodel.PowerSetType",
                               "7ef0fc9b-2bdf-3302-a4d9-7da02b233986",
                               Row{&Impl::universe_, "universe", 5,
                                   "c6742080-e70b-3f37-a440-00f3fb21f732", Ordered | NoMutator}};

  orb::zero::PrimitiveSequence<std::string>& getUniverse() noexcept { return universe_; }
  const orb::zero::PrimitiveSequence<std::string>& getUniverse() const noexcept {
    return universe_;
  }
  bool hasUniverse() const noexcept { return !universe_.empty(); }

  bool isCompatible(const LatticeType& other) const override;
};

}  // namespace torvan::datamodel
