#pragma once

#include <orb/zero/hb/AbstractTypedValueMarshaler.h>

namespace orb::zero::hb {

/// Puts what the host gives into framework values, one by one. The second parameter is for
/// specialisations by a property of T.
template <class T, class = void>
class TypedValueMarshaler : public AbstractTypedValueMarshaler<T> {
 public:
  using AbstractTypedValueMarshaler<T>::AbstractTypedValueMarshaler;

  Value fromHost(const tyve::Value& value) const final {
    if (value.isEmpty() && !value.is(tyve::Kind::Char)) return {};
    return read(value);
  }
  Value fromHostMany(const tyve::Value& value) const final {
    std::vector<T> all;
    this->forEach(value, [&](const tyve::Value& item) { all.push_back(read(item)); });
    return all;
  }

 protected:
  /// Raises an error unless it is one value of the type.
  virtual T read(const tyve::Value& value) const = 0;
};

}  // namespace orb::zero::hb
