#include <orb/zero/meta/Type.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_CLASS_H
#define ORB_ZERO_META_CLASS_H

namespace orb::zero::meta {

class Operation;
class Property;

/// A class of elements. It owns its own properties and operations, those in the order of their
/// positions.
class ORB_ZERO_API Class : public Handle<Class, Type> {
 public:
  class Impl;
  using Handle::Handle;

  /// The constant record of the class. Raises "NoSuchType" for one that was described without.
  operator const ClassInfo&() const;
  friend bool operator==(const Class& type, const ClassInfo& info) { return type.isOf(info.id); }
  friend bool operator==(const Class& a, const Class& b) { return isSame(a, b); }

  static const PropertyInfo& isAbstract() { return property(2); }
  static const PropertyInfo& superclass() { return property(3); }
  static const PropertyInfo& properties() { return property(4); }
  static const PropertyInfo& operations() { return property(5); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_CLASS_H
