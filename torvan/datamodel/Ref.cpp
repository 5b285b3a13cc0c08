#include <torvan/datamodel/Ref.h>

#include <algorithm>
#include <cassert>
#include <cstdlib>

#include <boost/variant/get.hpp>

#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/Struct.h>

namespace torvan::datamodel {
namespace {

template <class Alternative, class Place>
auto& alternative(Place& place) {
  auto* const held = boost::strict_get<Alternative>(&place);
  if (!held) std::abort();
  return *held;
}

/// Calls `step` for each slot and the array element that stands for it, in ascending order.
template <class Slots, class Step>
void zipSlotsWithElements(Slots& slots, const LatticeValue& array, Step step) {
  const auto& elements = Array(array)->getValues();
  assert(slots.size() == elements.size());
  auto slot = slots.begin();
  for (auto element = elements.begin(); slot != slots.end() && element != elements.end(); ++element)
    step(*slot++, element->second->getValue());
}

void assignOp(LatticeValue* slot, const LatticeValue& value) {
  if (slot) *slot = value;
}

bool eqOp(const LatticeValue* slot, const LatticeValue& value) {
  return (slot ? *slot : LatticeValue()).eq(value);
}

/// An empty slot receives a clone of the prototype.
LatticeValue& filled(LatticeValue& slot, const LatticeValue& prototype) {
  if (!slot) slot = prototype.clone();
  return slot;
}

}  // namespace

Ref::Ref(LatticeValue* const& slot) : place_(slot) {}
Ref::Ref(const PowerSetRef& bits) : place_(bits) {}
Ref::Ref(const std::vector<LatticeValue*>& slots) : place_(slots) {}

LatticeValue* Ref::getLatticeValuePtr() const { return alternative<LatticeValue*>(place_); }
PowerSetRef Ref::getPowerSetRef() const { return alternative<PowerSetRef>(place_); }
std::vector<LatticeValue*> Ref::getLatticeValuePtrVec() const { return alternative<Slots>(place_); }

void Ref::assign(const LatticeValue& value) {
  if (auto* const slot = boost::strict_get<LatticeValue*>(&place_))
    assignOp(*slot, value);
  else if (auto* const bits = boost::strict_get<PowerSetRef>(&place_))
    bits->assign(value);
  else
    zipSlotsWithElements(alternative<Slots>(place_), value, assignOp);
}

bool Ref::update(const LatticeValue& value, const UpdateFunction& step) {
  const auto* const slots = boost::strict_get<Slots>(&place_);
  if (!slots) return step(*this, value);
  bool changed = false;
  const Slots copy = *slots;  // the step may change this reference
  zipSlotsWithElements(copy, value, [&](LatticeValue* slot, const LatticeValue& element) {
    Ref place(slot);
    changed |= step(place, element);
  });
  return changed;
}

bool Ref::eq(const LatticeValue& value) {
  if (auto* const slot = boost::strict_get<LatticeValue*>(&place_)) return eqOp(*slot, value);
  if (auto* const bits = boost::strict_get<PowerSetRef>(&place_)) return bits->deref().eq(value);
  bool equal = true;
  zipSlotsWithElements(alternative<Slots>(place_), value,
                       [&](const LatticeValue* slot, const LatticeValue& element) {
                         equal = equal && eqOp(slot, element);
                       });
  return equal;
}

LatticeValue Ref::deref() {
  if (auto* const slot = boost::strict_get<LatticeValue*>(&place_))
    return *slot ? **slot : LatticeValue();
  if (auto* const bits = boost::strict_get<PowerSetRef>(&place_)) return bits->deref();
  return {};
}

Ref Ref::ref(const std::string& fieldName, const LatticeValue& prototype) {
  const auto fieldOf = [&](LatticeValue* slot) {
    return slot ? Struct{filled(*slot, prototype)}.ref(fieldName).getLatticeValuePtr() : nullptr;
  };
  if (auto* const slot = boost::strict_get<LatticeValue*>(&place_)) return fieldOf(*slot);
  if (boost::strict_get<PowerSetRef>(&place_)) return static_cast<LatticeValue*>(nullptr);
  Slots& slots = alternative<Slots>(place_);
  Slots fields(slots.size());
  std::transform(slots.begin(), slots.end(), fields.begin(), fieldOf);
  slots.swap(fields);
  return slots;
}

Ref Ref::ref(std::uint16_t start, std::uint16_t end, const LatticeValue& prototype) {
  if (auto* const bits = boost::strict_get<PowerSetRef>(&place_)) return bits->ref(start, end);
  if (auto* const slot = boost::strict_get<LatticeValue*>(&place_)) {
    if (!*slot) return *slot;
    return IndexableValue{filled(**slot, prototype)}.ref(start, end);
  }
  const Slots& slots = alternative<Slots>(place_);
  const std::size_t last = end == 0 ? start : end;
  if (start == 0 || start > slots.size()) return static_cast<LatticeValue*>(nullptr);
  const auto first = slots.begin() + (start - 1);
  if (last <= start) return *first;
  return Slots(first, slots.begin() + static_cast<std::ptrdiff_t>(std::min(last, slots.size())));
}

}  // namespace torvan::datamodel
