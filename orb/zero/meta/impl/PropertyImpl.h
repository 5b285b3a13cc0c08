#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include <boost/optional/optional.hpp>

#include <orb/zero/meta/Property.h>
#include <orb/zero/meta/impl/TypedElementImpl.h>

namespace orb::zero::meta {

class ORB_ZERO_API Property::Impl : public ImplOf<Property> {
  std::uint16_t kind_ = static_cast<std::uint16_t>(ValueKind::Single);
  bool isOwning_ = false;
  std::uint16_t position_ = 0;
  bool isUnique_ = false;
  bool isReadOnly_ = false;
  bool isTransient_ = false;
  bool isPublicMutator_ = true;
  boost::optional<std::string> defaultValue_;
  Slot<Property> qualifiedBy_;
  bool isQualificationUnique_ = false;

 public:
  static constexpr Table table{
      Instances::Concrete,
      "orb.zero.meta.Property",
      "3164b47f-77b0-31e9-93e3-9044f083bd8a",
      Row{&Impl::kind_, "kind", 6, "b054873c-302e-346d-8abb-febac248cd15", Ordered | Unique},
      Row{&Impl::isOwning_, "isOwning", 7, "714dad1d-30cb-3b78-b8c4-e1bf5732d99b",
          Ordered | Unique},
      Row{&Impl::position_, "position", 8, "3ec77aa0-7e98-3d3e-9ca6-957e2bb9fe7f",
          Ordered | Unique},
      Row{&Impl::isUnique_, "isUnique", 9, "021a638a-9995-360a-a03b-8f0157503152",
          Ordered | Unique},
      Row{&Impl::isReadOnly_, "isReadOnly", 10, "6b00cd5b-5c1f-3759-84c9-b55d06046505",
          Ordered | Unique},
      Row{&Impl::isTransient_, "isTransient", 11, "49694d29-6b11-369a-ae97-14f5baed1078",
          Ordered | Unique},
      Row{&Impl::isPublicMutator_, "isPublicMutator", 12, "e185d574-5c18-3019-a19f-7ce6f34a9541",
          Ordered | Unique},
      Row{&Impl::defaultValue_, "defaultValue", 13, "7c8dc7f4-b73d-3c1d-bbc4-88d72448710c",
          Ordered | Unique},
      Row{&Impl::qualifiedBy_, "qualifiedBy", 14, "6361ea7f-f56c-366c-a6ee-d04fbc93de8f",
          Ordered | Unique},
      Row{&Impl::isQualificationUnique_, "isQualificationUnique", 15,
          "07b77f9d-1160-365c-9f80-2a9e6bc30ea0", Ordered | Unique}};

  ValueKind getKind() const noexcept { return static_cast<ValueKind>(kind_); }
  void setKind(ValueKind value) { set<&Impl::kind_>(static_cast<std::uint16_t>(value)); }
  bool isOwning() const noexcept { return isOwning_; }
  void setIsOwning(bool value) { set<&Impl::isOwning_>(value); }
  std::uint16_t getPosition() const noexcept { return position_; }
  void setPosition(std::uint16_t value) { set<&Impl::position_>(value); }
  bool isUnique() const noexcept { return isUnique_; }
  void setIsUnique(bool value) { set<&Impl::isUnique_>(value); }
  bool isReadOnly() const noexcept { return isReadOnly_; }
  void setIsReadOnly(bool value) { set<&Impl::isReadOnly_>(value); }
  bool isTransient() const noexcept { return isTransient_; }
  void setIsTransient(bool value) { set<&Impl::isTransient_>(value); }
  /// Whether the scripting host offers a setter.
  bool isPublicMutator() const noexcept { return isPublicMutator_; }
  void setIsPublicMutator(bool value) { set<&Impl::isPublicMutator_>(value); }

  /// Nothing said of a default value is told apart from a default of none.
  const boost::optional<std::string>& getDefaultValue() const noexcept { return defaultValue_; }
  bool hasDefaultValue() const noexcept { return has<&Impl::defaultValue_>(); }
  void setDefaultValue(boost::optional<std::string> value) {
    set<&Impl::defaultValue_>(std::move(value));
  }

  const Property& getQualifiedBy() const noexcept { return qualifiedBy_; }
  void setQualifiedBy(const Property& value) { set<&Impl::qualifiedBy_>(value); }
  bool isQualificationUnique() const noexcept { return isQualificationUnique_; }
  void setIsQualificationUnique(bool value) { set<&Impl::isQualificationUnique_>(value); }

  Class getOwningType() const;
  void setOwningType(const Class& value);

  /// Null for a property that was described without.
  const PropertyInfo* getInfo() const noexcept { return info_; }

 private:
  friend class AbstractMetaPackage;
  const PropertyInfo* info_ = nullptr;
};

}  // namespace orb::zero::meta
