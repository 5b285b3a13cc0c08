#pragma once

#include <cstddef>
#include <functional>

#include <orb/zero/ModelElement.h>

namespace torvan::datamodel {

/// Watches a walk down a term or an equation, which visits an element as often as it is referred
/// to. A walk that is longer than the model is large has met elements again; only then is it worth
/// finding out whether it ever ends.
class Walk {
 public:
  using Element = orb::zero::ModelElement::Impl;

  explicit Walk(const orb::zero::ModelElement& root);

  /// To be called once per visit. Raises "CyclicValue" when the walk would be endless, or nearly
  /// so. `enters` tells whether the walk goes on from such an element, not only to it; what an
  /// element owns is taken for a part of it.
  template <class Enters>
  void step(Enters enters) {
    if (++steps_ > limit_) [[unlikely]]
      check(enters);
  }

 private:
  void check(const std::function<bool(Element&)>& enters);

  orb::zero::ModelElement root_;
  std::size_t steps_ = 0, limit_;
};

}  // namespace torvan::datamodel
