#pragma once

#include <torvan/datamodel/boolean3.h>

namespace torvan::datamodel {

/// The order of composite values from that of their parts.
class OrderFold {
 public:
  void add(boolean3 part) noexcept {
    allBelow_ = allBelow_ && part == boolean3::T;
    allAbove_ = allAbove_ && part == boolean3::F;
  }
  /// Nothing can change the result any more.
  bool isSettled() const noexcept { return !allBelow_ && !allAbove_; }
  boolean3 result() const noexcept {
    return allBelow_ ? boolean3::T : allAbove_ ? boolean3::F : boolean3::NA;
  }

 private:
  bool allBelow_ = true;
  bool allAbove_ = true;
};

}  // namespace torvan::datamodel
