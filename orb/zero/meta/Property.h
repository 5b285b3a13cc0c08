#include <orb/zero/meta/TypedElement.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_PROPERTY_H
#define ORB_ZERO_META_PROPERTY_H

namespace orb::zero::meta {

class Class;

/// One property of a class, which owns it. `position` counts from 1, inherited properties included.
/// `isOwning`: the values are owned by the element. Values that are stored under keys name the
/// property of theirs that is the key in `qualifiedBy`.
class ORB_ZERO_API Property : public Handle<Property, TypedElement> {
 public:
  class Impl;
  using Handle::Handle;

  /// The constant record of the property. Raises "NoSuchType" for one that was described without.
  operator const PropertyInfo&() const;
  friend bool operator==(const Property& property, const PropertyInfo& info) {
    return property.isOf(info.id);
  }
  friend bool operator==(const Property& a, const Property& b) { return isSame(a, b); }

  static const PropertyInfo& kind() { return property(6); }
  static const PropertyInfo& isOwning() { return property(7); }
  static const PropertyInfo& position() { return property(8); }
  static const PropertyInfo& isUnique() { return property(9); }
  static const PropertyInfo& isReadOnly() { return property(10); }
  static const PropertyInfo& isTransient() { return property(11); }
  static const PropertyInfo& isPublicMutator() { return property(12); }
  static const PropertyInfo& defaultValue() { return property(13); }
  static const PropertyInfo& qualifiedBy() { return property(14); }
  static const PropertyInfo& isQualificationUnique() { return property(15); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_PROPERTY_H
