#ifndef ORB_ZERO_META_NAMEDELEMENT_H
#define ORB_ZERO_META_NAMEDELEMENT_H

#include <concepts>
#include <type_traits>

#include <orb/zero/Handle.h>

namespace orb::zero::meta {

/// What carries a name in the description of a model. Abstract. Two descriptions are equal when
/// their UUIDs are, so that one that was replaced still equals its successor.
class ORB_ZERO_API NamedElement : public Handle<NamedElement, ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  friend bool operator==(const NamedElement& a, const NamedElement& b) noexcept {
    return isSame(a, b);
  }

  static const PropertyInfo& name() { return property(1); }

 protected:
  static bool isSame(const NamedElement& a, const NamedElement& b) noexcept {
    return a.get() && b.get() ? b.isOf(a.get()->getUuid()) : a.get() == b.get();
  }
  bool isOf(const uuid& id) const noexcept { return get() && get()->getUuid() == id; }
};

/// The package of all classes in this namespace.
ORB_ZERO_API AbstractMetaPackage& metaPackage();
template <std::derived_from<NamedElement> X>
AbstractMetaPackage& packageOf(std::type_identity<X>) {
  return metaPackage();
}

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_NAMEDELEMENT_H
