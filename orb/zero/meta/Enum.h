#include <orb/zero/meta/Type.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_ENUM_H
#define ORB_ZERO_META_ENUM_H

namespace orb::zero::meta {

class EnumLiteral;

/// An enumeration. It owns its literals.
class ORB_ZERO_API Enum : public Handle<Enum, Type> {
 public:
  class Impl;
  using Handle::Handle;

  static const PropertyInfo& underlyingType() { return property(2); }
  static const PropertyInfo& literals() { return property(3); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_ENUM_H
