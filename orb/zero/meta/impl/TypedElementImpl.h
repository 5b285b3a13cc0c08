#pragma once

#include <cstdint>

#include <orb/zero/meta/TypedElement.h>
#include <orb/zero/meta/impl/TypeImpl.h>

namespace orb::zero::meta {

class ORB_ZERO_API TypedElement::Impl : public ImplOf<TypedElement> {
  Slot<Type> type_;
  std::uint32_t lower_ = 0;
  std::uint32_t upper_ = 0;
  bool isOrdered_ = false;

 public:
  static constexpr Table table{
      Instances::Abstract,
      "orb.zero.meta.TypedElement",
      "82728959-4d6f-3d50-b962-5ff7d2bdbe75",
      Row{&Impl::type_, "type", 2, "35276b52-291d-3673-89b0-18173ca54d72", Ordered | Unique},
      Row{&Impl::lower_, "lower", 3, "45ee0c90-bdb1-3e36-a814-e02f7bfdb45b", Ordered | Unique},
      Row{&Impl::upper_, "upper", 4, "f2e9dc80-4bb7-3b86-a91c-702fdaf5e794", Ordered | Unique},
      Row{&Impl::isOrdered_, "isOrdered", 5, "427ff611-d213-34c1-9305-74d780a92e3d",
          Ordered | Unique}};

  const Type& getType() const noexcept { return type_; }
  void setType(const Type& value) { set<&Impl::type_>(value); }

  std::uint32_t getLower() const noexcept { return lower_; }
  bool hasLower() const noexcept { return has<&Impl::lower_>(); }
  void setLower(std::uint32_t value) { set<&Impl::lower_>(value); }

  std::uint32_t getUpper() const noexcept { return upper_; }
  bool hasUpper() const noexcept { return has<&Impl::upper_>(); }
  void setUpper(std::uint32_t value) { set<&Impl::upper_>(value); }

  bool isOrdered() const noexcept { return isOrdered_; }
  void setIsOrdered(bool value) { set<&Impl::isOrdered_>(value); }
};

}  // namespace orb::zero::meta
