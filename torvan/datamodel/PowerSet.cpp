#include <torvan/datamodel/PowerSet.h>

#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/TypeFactory.h>
#include <torvan/datamodel/ValueFactory.h>

namespace torvan::datamodel {
namespace {

const Bits& bitsOf(const LatticeValue& value) { return PowerSet::implOf(value).bits(); }

}  // namespace

LatticeValue PowerSet::Impl::join(const LatticeValue& other) const {
  const Bits& given = bitsOf(other);
  return makeLike([&](Bits& bits) { bits.join(value_, given, model().pool()); });
}

LatticeValue PowerSet::Impl::meet(const LatticeValue& other) const {
  const Bits& given = bitsOf(other);
  return makeLike([&](Bits& bits) { bits.meet(value_, given, model().pool()); });
}

boolean3 PowerSet::Impl::le(const LatticeValue& other) const {
  return value_.compare(bitsOf(other));
}

bool PowerSet::Impl::eq(const LatticeValue& other) const { return value_ == bitsOf(other); }

LatticeValue PowerSet::Impl::clone() const {
  return makeLike([&](Bits& bits) { bits.assign(value_, model().pool()); });
}

LatticeValue PowerSet::Impl::at(std::uint16_t start, std::uint16_t end) const {
  const std::uint16_t length = countOf(start, end);
  if (start == 1 && length == value_.size() && hasType()) return clone();

  const auto offset = static_cast<std::uint16_t>(start - 1);
  BitSet bits = value_.copy() >> offset;
  bits.resize(length);

  const orb::zero::Batch batch(*this);
  ValueFactory values(getModel());
  TypeFactory types(getModel());
  types.valueFactory(&values);
  return values.createPowerSet(types.createPowerSetType("", length), bits);
}

Ref PowerSet::Impl::ref(std::uint16_t start, std::uint16_t end) {
  return PowerSetRef(&value_.stored(), start, end, getModel());
}

}  // namespace torvan::datamodel
