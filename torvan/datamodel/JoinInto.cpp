#include <torvan/datamodel/JoinInto.h>

#include <optional>
#include <utility>

#include <torvan/datamodel/PowerSet.h>

namespace torvan::datamodel {
namespace {

/// Whether there is more in the other set than lies beyond the length of the first.
bool isMore(const Bits& more, const Bits& before, orb::zero::ElementPool& pool) {
  if (more.isSubsetOf(before)) return false;
  if (more.size() <= before.size()) return true;
  Bits joined;
  joined.join(before, more, pool);
  return !(joined == before);
}

template <class Fill>
void changeInPlace(PowerSet::Impl& set, Fill fill) {
  orb::zero::Unit unit(set);
  set.notifyModifying(PowerSet::value().position);
  set.fill(fill);
  unit.commit();
}

bool joinInPlace(PowerSet::Impl& set, const Bits& more) {
  set.checkNoProxy();
  orb::zero::ElementPool& pool = set.model().pool();
  if (!isMore(more, set.bits(), pool)) return false;
  changeInPlace(set, [&](Bits& bits) { bits.add(more, pool); });
  return true;
}

/// Whether the other can stand for a result of the set that has its bits.
bool mayStandFor(const PowerSet::Impl& set, const PowerSet::Impl& other) {
  return set.getType() == other.getType() && &set.model() == &other.model();
}
/// The same of the greater one of two, which is their join.
bool mayShare(const LatticeValue& a, const LatticeValue& b) {
  const auto *const set = PowerSet::exactImplOf(a), *const other = PowerSet::exactImplOf(b);
  return set && other && set->bits().size() == other->bits().size() && mayStandFor(*set, *other);
}

/// Joins sets that are short and of one length in one step, if that is what there is.
std::optional<bool> joinShort(LatticeValue& value, std::span<const LatticeValue* const> others,
                              Sharing sharing) {
  auto* const set = PowerSet::exactImplOf(value);
  if (!set || !set->bits().isShort()) return std::nullopt;
  const std::size_t size = set->bits().size();
  const Bits::Short before = set->bits().shortWords();
  Bits::Short joined = before;
  for (const LatticeValue* const other : others) {
    const auto* const more = PowerSet::exactImplOf(*other);
    if (!more || !more->bits().isShort() || more->bits().size() != size) return std::nullopt;
    joined |= more->bits().shortWords();
  }
  if (joined == before) return false;
  if (isHeldAlone(value)) {
    changeInPlace(*set, [&](Bits& bits) {  // which have other room once they are recorded
      Bits all;
      all.setShort(joined, size);
      bits.add(all, set->model().pool());
    });
    return true;
  }
  if (sharing == Sharing::Allowed)
    for (const LatticeValue* const other : others) {
      const PowerSet::Impl& more = PowerSet::implOf(*other);
      if (joined == more.bits().shortWords() && mayStandFor(*set, more))
        return value = *other, true;
    }
  value = set->makeLike([&](Bits& bits) { bits.setShort(joined, size); });
  return true;
}

/// How the other lies to the value, where that tells what their join is: not where their types
/// differ, as that of the other decides what is compared, and that of the value what is joined.
boolean3 orderOf(const LatticeValue& other, const LatticeValue& value) {
  if (!other || other.get()->classNumber() != value.get()->classNumber()) return boolean3::NA;
  const bool isSet = PowerSet::exactImplOf(value) && PowerSet::exactImplOf(other);
  if (!isSet && (!value->hasType() || value->getType() != other->getType())) return boolean3::NA;
  try {
    return other.le(value);
  } catch (const orb::zero::Exception&) {
    return boolean3::NA;
  }
}

}  // namespace

bool joinInto(LatticeValue& value, const LatticeValue& other, Sharing sharing) {
  auto* const element = value.operator->();
  if (isHeldAlone(value) && element->classNumber() == PowerSet::classNumber) [[likely]]
    return joinInPlace(static_cast<PowerSet::Impl&>(*element), PowerSet::implOf(other).bits());
  const boolean3 order = orderOf(other, value);
  if (order == boolean3::T) return false;
  if (order == boolean3::F && sharing == Sharing::Allowed && mayShare(value, other)) {
    value = other;
    return true;
  }
  LatticeValue joined = value.join(other);
  if (joined.eq(value)) return false;
  value = std::move(joined);
  return true;
}

bool joinAllInto(LatticeValue& value, std::span<const LatticeValue* const> others,
                 Sharing sharing) {
  if (const auto hasGrown = joinShort(value, others, sharing)) return *hasGrown;
  bool hasGrown = false;
  for (const LatticeValue* const other : others) hasGrown |= joinInto(value, *other, sharing);
  return hasGrown;
}

}  // namespace torvan::datamodel
