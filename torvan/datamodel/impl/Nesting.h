#pragma once

#include <orb/zero/Exception.h>

namespace torvan::datamodel {

/// A step of an operation into the parts of a value or a type, of which there is one per level.
/// Types nest a few levels deep: what goes much deeper contains itself, and would end the stack.
class Nesting {
 public:
  /// Raises "CyclicValue".
  Nesting() {
    if (depth == most) [[unlikely]]
      orb::zero::raise("CyclicValue");
    ++depth;
  }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;
  ~Nesting() { --depth; }

 private:
  static constexpr unsigned most = 1000;
  static constinit inline thread_local unsigned depth = 0;
};

}  // namespace torvan::datamodel
