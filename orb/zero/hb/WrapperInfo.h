#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <orb/zero/hb/Api.h>
#include <orb/zero/hb/CollectionObject.h>
#include <tyve/COSClassInfo.h>

namespace orb::zero::hb {

/// The host class of a class of elements, made from the record of that class: its superclass; a
/// constructor, when it has instances; each own property that the host has a form for, an owned
/// collection followed by the method that creates elements into it; `StaticMetaClass`, which gives
/// the description of the class. Who derives from it adds the operations.
///
/// A property has a setter unless its flags refuse one; a collection is a live view (see
/// `CollectionClass`). Failures of elements reach the host as its own.
class ORB_ZERO_HB_API WrapperInfo : public tyve::COSClassInfo {
 public:
  enum class Access { Full, ReadOnly };
  /// What the host's help says of a property.
  using PropertyText = std::string_view (*)(const meta::PropertyInfo&);
  static std::string_view noText(const meta::PropertyInfo&) { return {}; }

  /// `ReadOnly`: nothing is created or set by the host. `primitives` is the host class of the
  /// collections of primitive values.
  WrapperInfo(const meta::ClassInfo& type, std::string documentation, Access access = Access::Full,
              std::string_view primitives = "orb.zero.PrimitiveSequence",
              PropertyText propertyText = &noText);
  ~WrapperInfo() override;

  const meta::ClassInfo& metaClass() const noexcept { return class_; }

  /// The class, the name, if the element has one that is a text, and the UUID.
  std::string print(const tyve::Value& object) const override;

 private:
  void addElementConstructor();
  void addElementProperty(const meta::PropertyInfo& property, Access access,
                          std::string_view primitives);
  void addSingle(const meta::PropertyInfo& property, const ValueMarshaler& marshaler,
                 bool isWritable);
  void addCollection(const meta::PropertyInfo& property, const ValueMarshaler& items,
                     std::string_view primitives);
  void addCreateInto(const meta::PropertyInfo& property);
  void addStaticMetaClass();

  const meta::ClassInfo& class_;
  PropertyText propertyText_;
  std::vector<std::unique_ptr<const CollectionView>> views_;
};

}  // namespace orb::zero::hb
