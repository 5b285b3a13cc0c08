#pragma once

#include <algorithm>

#include <boost/container/small_vector.hpp>

#include <orb/zero/meta/ClassInfo.h>

namespace orb::zero {

/// Shows what the element owns.
inline void visitOwned(const ModelElement::Impl& element, meta::TargetVisitor& visitor) {
  for (const meta::PropertyInfo* property : element.getMetaClass().owning)
    property->services.targets(element, visitor);
}

/// Collects what properties name.
struct Targets : meta::TargetVisitor {
  void visit(ModelElement::Impl& target) override { found.push_back(&target); }
  /// What one property names, each once.
  void collect(const ModelElement::Impl& element, const meta::PropertyInfo& property) {
    found.clear();
    property.services.targets(element, *this);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
  }

  boost::container::small_vector<ModelElement::Impl*, 8> found;
};

}  // namespace orb::zero
