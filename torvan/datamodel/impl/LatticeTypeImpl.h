#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include <orb/zero/ImplOf.h>
#include <torvan/datamodel/LatticeType.h>
#include <torvan/datamodel/LatticeValue.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API LatticeType::Impl : public orb::zero::ImplOf<LatticeType> {
  std::string name_;
  std::uint16_t numElems_ = 0;
  orb::zero::Slot<LatticeValue> top_;
  orb::zero::Slot<LatticeValue> bottom_;

 public:
  static constexpr Table table{
      Instances::Abstract,
      "torvan.datamodel.LatticeType",
      "76c0b034-0399-36e8-9ba4-68e19f708e15",
      Row{&Impl::name_, "name", 1, "204d0ad3-3616-360b-8bd6-1f39d5d9bcf6",
          Ordered | Unique | NoMutator | NoDefault},
      Row{&Impl::numElems_, "numElems", 2, "3b901a7f-7025-31f5-8655-f95d629472df",
          Ordered | Unique | NoMutator | NoDefault},
      Row{&Impl::top_, "top", 3, "74759111-c957-31d4-9e74-41c143160b46",
          Ordered | Unique | NoMutator},
      Row{&Impl::bottom_, "bottom", 4, "af8c142c-23af-30e1-9ea0-fce9248d0780",
          Ordered | Unique | NoMutator},
      Op{&LatticeType::isCompatible, "isCompatible", Abstract, "other"}};

  const std::string& getName() const noexcept { return name_; }
  bool hasName() const noexcept { return has<&Impl::name_>(); }
  void basicSetName(std::string value) { basicSet<&Impl::name_>(std::move(value)); }
  void setName(std::string value) { set<&Impl::name_>(std::move(value)); }

  std::uint16_t getNumElems() const noexcept { return numElems_; }
  bool hasNumElems() const noexcept { return has<&Impl::numElems_>(); }
  void basicSetNumElems(std::uint16_t value) { basicSet<&Impl::numElems_>(value); }
  void setNumElems(std::uint16_t value) { set<&Impl::numElems_>(value); }

  const LatticeValue& getTop() const noexcept { return top_; }
  bool hasTop() const noexcept { return has<&Impl::top_>(); }
  void basicSetTop(const LatticeValue& value) { basicSet<&Impl::top_>(value); }
  void setTop(const LatticeValue& value) { set<&Impl::top_>(value); }

  const LatticeValue& getBottom() const noexcept { return bottom_; }
  bool hasBottom() const noexcept { return has<&Impl::bottom_>(); }
  void basicSetBottom(const LatticeValue& value) { basicSet<&Impl::bottom_>(value); }
  void setBottom(const LatticeValue& value) { set<&Impl::bottom_>(value); }

  virtual bool isCompatible(const LatticeType& other) const = 0;

  /// An anonymous type is made for values and goes with them: its top and bottom, which refer to it
  /// in turn, do not hold it.
  bool isReclaimable() const noexcept override;
};

}  // namespace torvan::datamodel
