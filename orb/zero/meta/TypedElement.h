#include <orb/zero/meta/NamedElement.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_TYPEDELEMENT_H
#define ORB_ZERO_META_TYPEDELEMENT_H

#include <cstdint>

namespace orb::zero::meta {

class Type;

/// What has a type and a number of values: a property, an argument, or an operation, for its
/// result. Abstract. Bounds may be unset; an upper one of `unbounded` is none.
class ORB_ZERO_API TypedElement : public Handle<TypedElement, NamedElement> {
 public:
  class Impl;
  using Handle::Handle;

  static constexpr std::uint32_t unbounded = ~std::uint32_t{0};

  static const PropertyInfo& type() { return property(2); }
  static const PropertyInfo& lower() { return property(3); }
  static const PropertyInfo& upper() { return property(4); }
  static const PropertyInfo& isOrdered() { return property(5); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_TYPEDELEMENT_H
