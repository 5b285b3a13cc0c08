#include <orb/zero/Value.h>

#include <orb/zero/Exception.h>

namespace orb::zero {

bool Value::equals(const Value& other) const {
  if (isEmpty() || other.isEmpty()) return isEmpty() && other.isEmpty();
  return *type_ == *other.type_ && type_->equals(bytes_, other.bytes_);
}

void Value::raiseNo(std::string_view expected) {
  raise("CannotCastIncompatibleTypes", {std::string(expected)});
}

}  // namespace orb::zero
