#include <torvan/datamodel/JoinInto.h>

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

bool joinInPlace(PowerSet::Impl& set, const Bits& more) {
  set.checkNoProxy();
  orb::zero::ElementPool& pool = set.model().pool();
  if (!isMore(more, set.bits(), pool)) return false;
  orb::zero::Unit unit(set);
  set.notifyModifying(PowerSet::value().position);
  set.fill([&](Bits& bits) { bits.add(more, pool); });
  unit.commit();
  return true;
}

bool areSetsOfOneLength(const LatticeValue& a, const LatticeValue& b) {
  const auto *const set = PowerSet::exactImplOf(a), *const other = PowerSet::exactImplOf(b);
  return set && other && set->bits().size() == other->bits().size();
}

}  // namespace

bool joinInto(LatticeValue& value, const LatticeValue& more, Sharing sharing) {
  auto* const element = value.operator->();
  if (isHeldAlone(value) && element->classNumber() == PowerSet::classNumber) [[likely]]
    return joinInPlace(static_cast<PowerSet::Impl&>(*element), PowerSet::implOf(more).bits());
  const bool isAlike = more && more.get()->classNumber() == element->classNumber();
  const boolean3 order = isAlike ? more.le(value) : boolean3::NA;  // or else `join` refuses it
  if (order == boolean3::T) return false;
  const bool mayShare =
      order == boolean3::F && sharing == Sharing::Allowed && element->getType() == more->getType();
  if (mayShare && areSetsOfOneLength(value, more)) {
    value = more;
    return true;
  }
  LatticeValue joined = value.join(more);
  if (joined.eq(value)) return false;
  if (mayShare && joined.eq(more))
    value = more;
  else
    value = std::move(joined);
  return true;
}

}  // namespace torvan::datamodel
