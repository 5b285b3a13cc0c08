#pragma once

#include <vector>

#include <orb/zero/meta/ClassInfo.h>

namespace orb::zero {

/// Collects what properties name.
struct Targets final : meta::TargetVisitor {
  void visit(ModelElement::Impl& target) override { found.push_back(&target); }

  std::vector<ModelElement::Impl*> found;
};

}  // namespace orb::zero
