#pragma once

#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/LatticeType.h>
#include <torvan/datamodel/impl/LatticeTypeImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API ArrayType::Impl : public orb::zero::ImplOf<ArrayType> {
  orb::zero::Slot<LatticeType> elemType_;

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.ArrayType", "f34c7b43-eb13-324e-8abe-4bfd2aeae3e9",
      Row{&Impl::elemType_, "elemType", 5, "0aad053c-7848-37c3-a883-bb8c1cf8e63c",
          Ordered | Unique | NoMutator}};

  const LatticeType& getElemType() const noexcept { return elemType_; }
  bool hasElemType() const noexcept { return has<&Impl::elemType_>(); }
  void basicSetElemType(const LatticeType& value) { basicSet<&Impl::elemType_>(value); }
  void setElemType(const LatticeType& value) { set<&Impl::elemType_>(value); }

  bool isCompatible(const LatticeType& other) const override;
};

}  // namespace torvan::datamodel
