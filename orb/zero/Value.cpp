#include <orb/zero/Value.h>

#include <orb/zero/Exception.h>

namespace orb::zero {

void Value::raiseNo(std::string_view expected) {
  raise("CannotCastIncompatibleTypes", {std::string(expected)});
}

}  // namespace orb::zero
