#include <orb/zero/meta/TypedElement.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_ARGUMENT_H
#define ORB_ZERO_META_ARGUMENT_H

namespace orb::zero::meta {

class Operation;

/// One argument of an operation, which owns it.
class ORB_ZERO_API Argument : public Handle<Argument, TypedElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const PropertyInfo& isInput() { return property(6); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_ARGUMENT_H
