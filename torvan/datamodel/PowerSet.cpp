#include <torvan/datamodel/PowerSet.h>

#include <algorithm>

#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/TypeFactory.h>
#include <torvan/datamodel/ValueFactory.h>

namespace torvan::datamodel {
namespace {

PowerSet make(const PowerSet::Impl& like, BitSet bits) {
  PowerSet::Builder builder(like.getModel());
  builder->setType(like.getType());
  builder->basicSetValue(std::move(bits));
  return builder.create();
}

/// Combines the bits with those of the other set, taken at the same length.
template <class Combine>
BitSet combined(BitSet bits, const LatticeValue& other, Combine combine) {
  const BitSet& given = PowerSet { other } -> getValue();
  if (given.size() == bits.size()) {
    combine(bits, given);
  } else {
    BitSet resized = given;
    resized.resize(bits.size());
    combine(bits, resized);
  }
  return bits;
}

/// Inclusion, where bits that a set lacks read as 0.
bool isSubset(const BitSet& a, const BitSet& b) {
  if (a.size() == b.size()) return a.is_subset_of(b);
  BitSet longer = a.size() < b.size() ? a : b;
  longer.resize(std::max(a.size(), b.size()));
  return a.size() < b.size() ? longer.is_subset_of(b) : a.is_subset_of(longer);
}

}  // namespace

LatticeValue PowerSet::Impl::join(const LatticeValue& other) const {
  return make(*this, combined(value_, other, [](BitSet& a, const BitSet& b) { a |= b; }));
}

LatticeValue PowerSet::Impl::meet(const LatticeValue& other) const {
  return make(*this, combined(value_, other, [](BitSet& a, const BitSet& b) { a &= b; }));
}

boolean3 PowerSet::Impl::le(const LatticeValue& other) const {
  const BitSet& bits = PowerSet { other } -> getValue();
  if (isSubset(value_, bits)) return boolean3::T;
  return isSubset(bits, value_) ? boolean3::F : boolean3::NA;
}

bool PowerSet::Impl::eq(const LatticeValue& other) const {
  return value_ == PowerSet { other } -> getValue();
}

LatticeValue PowerSet::Impl::clone() const { return make(*this, value_); }

LatticeValue PowerSet::Impl::at(std::uint16_t start, std::uint16_t end) const {
  if (end == 0) end = start;
  if (start == 1 && end == value_.size() && hasType()) return clone();

  const auto offset = static_cast<std::uint16_t>(start - 1);
  const auto length = static_cast<std::uint16_t>(end < start ? 0 : end - start + 1);
  BitSet bits = value_ >> offset;
  bits.resize(length);

  const orb::zero::Batch batch(*this);
  ValueFactory values(getModel());
  TypeFactory types(getModel());
  types.valueFactory(&values);
  return values.createPowerSet(types.createPowerSetType("", length), bits);
}

Ref PowerSet::Impl::ref(std::uint16_t start, std::uint16_t end) {
  return PowerSetRef(&value_, start, end, getModel());
}

}  // namespace torvan::datamodel
