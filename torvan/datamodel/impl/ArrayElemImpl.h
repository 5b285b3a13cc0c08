#pragma once

#include <cstdint>

#include <orb/zero/ImplOf.h>
#include <torvan/datamodel/ArrayElem.h>
#include <torvan/datamodel/LatticeValue.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API ArrayElem::Impl : public orb::zero::ImplOf<ArrayElem> {
  std::uint16_t index_ = 0;
  orb::zero::Slot<LatticeValue> value_;

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.ArrayElem",
      "e0cce470-c4c4-302a-9267-db1bfbbee8d2",
      Row{&Impl::index_, "index", 1, "9d376a34-0db9-357f-af02-2f9f64d3f811",
          Ordered | Unique | ReadOnly | Transient | NoDefault},
      Row{&Impl::value_, "value", 2, "c99c717c-0168-32b7-a1df-067ff8f76095", Ordered | Unique},
      Op{&ArrayElem::ref, "ref", Defined}};

  /// The key under which the owner stores the element.
  static const std::uint16_t& keyOf(const ModelElement::Impl& element) {
    return static_cast<const Impl&>(element).index_;
  }

  std::uint16_t getIndex() const noexcept { return index_; }
  bool hasIndex() const noexcept { return has<&Impl::index_>(); }
  void basicSetIndex(std::uint16_t value) { basicSet<&Impl::index_>(value); }

  const LatticeValue& getValue() const noexcept { return value_; }
  bool hasValue() const noexcept { return has<&Impl::value_>(); }
  void basicSetValue(const LatticeValue& value) { basicSet<&Impl::value_>(value); }
  void setValue(const LatticeValue& value) { set<&Impl::value_>(value); }

  LatticeValue* ref() {
    checkNoProxy();
    return &value_;
  }
};

}  // namespace torvan::datamodel
