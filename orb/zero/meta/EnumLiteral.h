#include <orb/zero/meta/NamedElement.h>  // before the guard, see impl/Elements.h

#ifndef ORB_ZERO_META_ENUMLITERAL_H
#define ORB_ZERO_META_ENUMLITERAL_H

namespace orb::zero::meta {

class Enum;

/// How a literal is written: by its name, as "NA"; by its UUID; or by its public identifier, as
/// "torvan.datamodel.boolean3.NA".
enum class LiteralText { Name, Id, PublicId };

/// One literal of an enumeration, which owns it.
///
/// Accessors: `getText` writes it, `getPublicIdentifier` as the last of these forms.
class ORB_ZERO_API EnumLiteral : public Handle<EnumLiteral, NamedElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const PropertyInfo& value() { return property(2); }
};

}  // namespace orb::zero::meta

#include <orb/zero/meta/impl/Elements.h>

#endif  // ORB_ZERO_META_ENUMLITERAL_H
