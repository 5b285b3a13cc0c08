#include <orb/zero/meta/TypedElement.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_OPERATION_H
#define ORB_ZERO_META_OPERATION_H

namespace orb::zero::meta {

class Argument;
class Class;

/// One operation of a class, which owns it. Its type and bounds are those of the result.
///
/// Accessors: `getInvoker` is what calls it.
class ORB_ZERO_API Operation : public Handle<Operation, TypedElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const PropertyInfo& isAbstract() { return property(6); }
  static const PropertyInfo& isStatic() { return property(7); }
  static const PropertyInfo& isPublic() { return property(8); }
  static const PropertyInfo& isEvent() { return property(9); }
  static const PropertyInfo& arguments() { return property(10); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_OPERATION_H
