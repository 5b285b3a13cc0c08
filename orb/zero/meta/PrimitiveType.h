#include <orb/zero/meta/Type.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_PRIMITIVETYPE_H
#define ORB_ZERO_META_PRIMITIVETYPE_H

namespace orb::zero::meta {

/// A type whose values are no elements, such as "StdString".
class ORB_ZERO_API PrimitiveType : public Handle<PrimitiveType, Type> {
 public:
  class Impl;
  using Handle::Handle;
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_PRIMITIVETYPE_H
