#pragma once

#include <orb/zero/ModelElement.h>
#include <orb/zero/query/Constrainable.h>
#include <orb/zero/query/SearchClassMatchMode.h>

namespace orb::zero {

namespace query {
class AbstractQuery;
}

/// Root of the `Constrainables` of all classes; see `Handle::Constrainables`.
class ORB_ZERO_API ModelElement::Constrainables {
 public:
  Constrainables(query::AbstractQuery& query, const meta::ClassInfo& type,
                 query::SearchClassMatchMode mode);

 protected:
  /// The class itself; raises "InvalidValue" unless it is `base` or derived from it.
  static const meta::ClassInfo& checked(const meta::ClassInfo& type, const meta::ClassInfo& base);
};

}  // namespace orb::zero
