#include <orb/zero/meta/NamedElement.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_TYPE_H
#define ORB_ZERO_META_TYPE_H

namespace orb::zero::meta {

class Package;

/// What a value may be of: a class, an enumeration or a primitive type. Abstract. Its package owns
/// it.
///
/// Accessors: `getQualifiedName` is the name under which it is registered, `getNativeName` that of
/// the C++ type behind it, `getBuilderFactory` and `getCollectionAccessor` what it was registered
/// with.
class ORB_ZERO_API Type : public Handle<Type, NamedElement> {
 public:
  class Impl;
  using Handle::Handle;
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_TYPE_H
