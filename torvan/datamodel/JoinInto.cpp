#include <torvan/datamodel/JoinInto.h>

#include <utility>

#include <torvan/datamodel/PowerSet.h>

namespace torvan::datamodel {
namespace {

bool joinInPlace(PowerSet::Impl& set, const Bits& more) {
  set.checkNoProxy();
  if (more.isSubsetOf(set.bits())) return false;
  Bits joined;
  joined.join(set.bits(), more, set.model().pool());
  if (joined == set.bits()) return false;  // what is more lies beyond its length
  orb::zero::Unit unit(set);
  set.notifyModifying(PowerSet::value().position);
  set.fill([&](Bits& bits) { bits = std::move(joined); });
  unit.commit();
  return true;
}

}  // namespace

bool joinInto(LatticeValue& value, const LatticeValue& more) {
  const auto* const element = value.operator->();
  if (isHeldAlone(value) && element->isOf(PowerSet::classNumber, PowerSet::metaClass()))
    return joinInPlace(PowerSet::implOf(value), PowerSet::implOf(more).bits());
  if (more.le(value) == boolean3::T) return false;
  LatticeValue joined = value.join(more);
  if (joined.eq(value)) return false;
  value = std::move(joined);
  return true;
}

}  // namespace torvan::datamodel
