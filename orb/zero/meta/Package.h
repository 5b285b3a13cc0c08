#include <orb/zero/meta/NamedElement.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_PACKAGE_H
#define ORB_ZERO_META_PACKAGE_H

namespace orb::zero::meta {

class Type;

/// A package of types. It owns them and the packages inside of it.
class ORB_ZERO_API Package : public Handle<Package, NamedElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const PropertyInfo& uri() { return property(2); }
  static const PropertyInfo& packages() { return property(3); }
  static const PropertyInfo& types() { return property(4); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_PACKAGE_H
