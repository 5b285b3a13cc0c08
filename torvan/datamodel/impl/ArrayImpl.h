#pragma once

#include <cstdint>

#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/impl/ArrayElemImpl.h>
#include <torvan/datamodel/impl/IndexableValueImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Array::Impl : public orb::zero::ImplOf<Array> {
  orb::zero::ElementMap<std::uint16_t, ArrayElem> values_{*this, &ArrayElem::Impl::keyOf,
                                                          &Array::values};

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.Array", "e82ced39-91eb-3b29-a08e-4a7d295dd66d",
      Row{&Impl::values_, "values", 2, "f88e817b-19fe-3120-92de-a9a57f9e0718", 0, "index"}};

  orb::zero::ElementMap<std::uint16_t, ArrayElem>& getValues() noexcept { return values_; }
  const orb::zero::ElementMap<std::uint16_t, ArrayElem>& getValues() const noexcept {
    return values_;
  }
  bool hasValues() const noexcept { return !values_.empty(); }
  /// See `ModelElement::Impl::createInto`.
  ArrayElem createIntoValues(ArrayElem::Builder& builder, const orb::zero::uuid& id) {
    return ArrayElem(createInto(Array::values(), builder, id));
  }

  LatticeValue join(const LatticeValue& other) const override;
  LatticeValue meet(const LatticeValue& other) const override;
  boolean3 le(const LatticeValue& other) const override;
  bool eq(const LatticeValue& other) const override;
  LatticeValue clone() const override;
  LatticeValue at(std::uint16_t start, std::uint16_t end) const override;
  Ref ref(std::uint16_t start, std::uint16_t end) override;

  /// Stores a new element; raises "UniquenessConstraint" when there is one at that index.
  void store(std::uint16_t index, const LatticeValue& value);
  /// The same with a live value of this model, behind all that are stored, in a unit of the caller.
  void append(std::uint16_t index, const LatticeValue& value);

 private:
  /// The value at the index, or the bottom of the array's type.
  LatticeValue read(std::uint16_t index) const;
};

}  // namespace torvan::datamodel
