#include <torvan/datamodel/JoinInto.h>

#include <utility>

#include <torvan/datamodel/PowerSet.h>

namespace torvan::datamodel {
namespace {

bool joinInPlace(PowerSet::Impl& set, const Bits& more) {
  set.checkNoProxy();
  const Bits& before = set.bits();
  if (more.isSubsetOf(before)) return false;
  Bits joined;
  joined.join(before, more, set.model().pool());
  if (more.size() > before.size() && joined == before) return false;  // what is more lies beyond it
  orb::zero::Unit unit(set);
  set.notifyModifying(PowerSet::value().position);
  set.fill([&](Bits& bits) { bits = std::move(joined); });
  unit.commit();
  return true;
}

}  // namespace

bool joinInto(LatticeValue& value, const LatticeValue& more, Sharing sharing) {
  auto* const element = value.operator->();
  if (isHeldAlone(value) && element->classNumber() == PowerSet::classNumber) [[likely]]
    return joinInPlace(static_cast<PowerSet::Impl&>(*element), PowerSet::implOf(more).bits());
  const boolean3 order = more.le(value);
  if (order == boolean3::T) return false;
  if (order == boolean3::F && sharing == Sharing::Allowed &&
      element->getType() == more->getType()) {
    value = more;
    return true;
  }
  LatticeValue joined = value.join(more);
  if (joined.eq(value)) return false;
  value = std::move(joined);
  return true;
}

}  // namespace torvan::datamodel
