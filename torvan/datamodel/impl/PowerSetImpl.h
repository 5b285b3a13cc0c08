#pragma once

#include <utility>

#include <torvan/datamodel/BitSet.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/impl/Bits.h>
#include <torvan/datamodel/impl/IndexableValueImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API PowerSet::Impl : public orb::zero::ImplOf<PowerSet> {
  Bits value_;

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.PowerSet", "677699d2-89d0-3790-a673-1b2d293023a2",
      Row{&Impl::value_, "value", 2, "f4b6737d-4261-33d9-b0c5-98aa3053a6f3",
          Ordered | Unique | NoDefault}};

  /// The bits as a `BitSet`, which is made when it is first asked for and stays at its address.
  const BitSet& getValue() const { return value_.stored(); }
  /// The same without that.
  const Bits& bits() const noexcept { return value_; }
  bool hasValue() const noexcept { return has<&Impl::value_>(); }
  void basicSetValue(BitSet value) { basicSet<&Impl::value_>(std::move(value)); }
  /// Has the bits filled in or changed, unrecorded; they count as given.
  template <class Fill>
  void fill(Fill into) {
    into(value_);
    setGiven(value().position, true);
  }
  /// A set of the same type and model, with the bits that are filled in.
  template <class Fill>
  PowerSet makeLike(Fill fill) const {
    return make(model(), [&](Impl& made) {
      made.basicSetType(getType());
      made.fill(fill);
    });
  }
  void setValue(BitSet value) { set<&Impl::value_>(Bits(std::move(value))); }

  LatticeValue join(const LatticeValue& other) const override;
  LatticeValue meet(const LatticeValue& other) const override;
  boolean3 le(const LatticeValue& other) const override;
  bool eq(const LatticeValue& other) const override;
  LatticeValue clone() const override;
  LatticeValue at(std::uint16_t start, std::uint16_t end) const override;
  Ref ref(std::uint16_t start, std::uint16_t end) override;
};

}  // namespace torvan::datamodel
