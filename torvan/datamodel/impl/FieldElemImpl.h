#pragma once

#include <string>
#include <utility>

#include <orb/zero/ImplOf.h>
#include <torvan/datamodel/FieldElem.h>
#include <torvan/datamodel/LatticeValue.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API FieldElem::Impl : public orb::zero::ImplOf<FieldElem> {
  std::string name_;
  orb::zero::Slot<LatticeValue> value_;

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.FieldElem",
      "3ef84786-8ca2-378a-8265-8f4819ae498b",
      Row{&Impl::name_, "name", 1, "840147cb-8912-3cbc-ae01-fad6fb2617fd",
          Ordered | Unique | ReadOnly | Transient | NoDefault},
      Row{&Impl::value_, "value", 2, "8fb5b092-1368-35a6-9551-d250595de13c", Ordered | Unique},
      Op{&FieldElem::ref, "ref", Defined}};

  /// The key under which the owner stores the element.
  static const std::string& keyOf(const ModelElement::Impl& element) {
    return static_cast<const Impl&>(element).name_;
  }

  const std::string& getName() const noexcept { return name_; }
  bool hasName() const noexcept { return has<&Impl::name_>(); }
  void basicSetName(std::string value) { basicSet<&Impl::name_>(std::move(value)); }

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
