#pragma once

#include <string>
#include <utility>

#include <orb/zero/ImplOf.h>
#include <torvan/datamodel/FieldType.h>
#include <torvan/datamodel/LatticeType.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API FieldType::Impl : public orb::zero::ImplOf<FieldType> {
  std::string name_;
  orb::zero::Slot<LatticeType> elemType_;

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.FieldType", "dd00a967-1253-3fa7-a0ad-f32546b2f999",
      Row{&Impl::name_, "name", 1, "35ed794c-25dd-3f12-ab78-d5b4cd994b37",
          Ordered | Unique | NoMutator | NoDefault},
      Row{&Impl::elemType_, "elemType", 2, "b1f8162c-2579-30d6-96a2-628324198b06",
          Ordered | Unique | NoMutator}};

  /// The key under which the owner stores the element.
  static const std::string& keyOf(const ModelElement::Impl& element) {
    return static_cast<const Impl&>(element).name_;
  }

  const std::string& getName() const noexcept { return name_; }
  bool hasName() const noexcept { return has<&Impl::name_>(); }
  void basicSetName(std::string value) { basicSet<&Impl::name_>(std::move(value)); }
  void setName(const std::string& value) { set<&Impl::name_>(value); }

  const LatticeType& getElemType() const noexcept { return elemType_; }
  bool hasElemType() const noexcept { return has<&Impl::elemType_>(); }
  void basicSetElemType(const LatticeType& value) { basicSet<&Impl::elemType_>(value); }
  void setElemType(const LatticeType& value) { set<&Impl::elemType_>(value); }
};

}  // namespace torvan::datamodel
