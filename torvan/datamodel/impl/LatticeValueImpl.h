#pragma once

#include <torvan/datamodel/LatticeValue.h>
#include <torvan/datamodel/impl/TermImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API LatticeValue::Impl : public orb::zero::ImplOf<LatticeValue> {
 public:
  static constexpr Table table{Instances::Abstract,
                               "torvan.datamodel.LatticeValue",
                               "a1b030f5-3d6e-3fd0-abce-90d5d238db33",
                               Op{&LatticeValue::join, "join", Abstract, "other"},
                               Op{&LatticeValue::meet, "meet", Abstract, "other"},
                               Op{&LatticeValue::le, "le", Abstract, "other"},
                               Op{&LatticeValue::eq, "eq", Abstract, "other"},
                               Op{&LatticeValue::clone, "clone", Abstract}};

  virtual LatticeValue join(const LatticeValue& other) const = 0;
  virtual LatticeValue meet(const LatticeValue& other) const = 0;
  virtual boolean3 le(const LatticeValue& other) const = 0;
  virtual bool eq(const LatticeValue& other) const = 0;
  virtual LatticeValue clone() const = 0;

  bool isReclaimable() const noexcept override { return isHeldOnlyBySlots(0); }
};

}  // namespace torvan::datamodel
