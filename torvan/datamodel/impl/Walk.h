#pragma once

#include <cstddef>

#include <orb/zero/ModelElement.h>

namespace torvan::datamodel {

/// Watches a walk down a term or an equation, which visits an element as often as it is referred
/// to. A walk that is longer than the model is large has met elements again; only then is it worth
/// finding out whether it ever ends.
class Walk {
 public:
  explicit Walk(const orb::zero::ModelElement& root);

  /// To be called once per visit. Raises "CyclicValue" when the walk would be endless, or nearly
  /// so.
  void step() {
    if (++steps_ > limit_) [[unlikely]]
      check();
  }

 private:
  void check();

  orb::zero::ModelElement root_;
  std::size_t steps_ = 0, limit_;
};

}  // namespace torvan::datamodel
