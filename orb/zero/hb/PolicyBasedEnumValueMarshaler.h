#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <orb/zero/Exception.h>
#include <orb/zero/hb/PolicyBasedValueMarshaler.h>
#include <tyve/ClassSystem.h>

namespace orb::zero::hb {

/// Converts the enumeration T to members of its host class, and back; also from texts that the host
/// can convert to members. Raises "CannotCastIncompatibleTypes" with the name of T for what is not
/// one member.
template <class T>
requires std::is_same_v<std::underlying_type_t<T>, std::int32_t>
class PolicyBasedEnumValueMarshaler : public PolicyBasedValueMarshaler<T> {
 public:
  /// The host class is what the type word says without " scalar".
  explicit PolicyBasedEnumValueMarshaler(std::string_view typeWord = std::string(valueName<T>()) +
                                                                     std::string(scalar))
      : PolicyBasedValueMarshaler<T>(tyve::intern(typeWord)),
        className_(tyve::intern(typeWord.ends_with(scalar)
                                    ? typeWord.substr(0, typeWord.size() - scalar.size())
                                    : typeWord)) {}

 protected:
  tyve::Value one(const T& value) const override {
    return hostClass().makeEnumeration(static_cast<std::int32_t>(value));
  }
  tyve::Value many(const std::vector<T>& values) const override {
    std::vector<std::int32_t> numbers;
    for (const T value : values) numbers.push_back(static_cast<std::int32_t>(value));
    return hostClass().makeEnumeration(tyve::Value::row<std::int32_t>(numbers));
  }
  T read(const tyve::Value& given) const override {
    const tyve::Value value = isText(given) ? memberOf(given) : given;
    if (!value.isScalar() || !value.is(tyve::Kind::Enumeration) || value.className() != className_)
      raise("CannotCastIncompatibleTypes", {std::string(valueName<T>())});
    return static_cast<T>(value.number<std::int32_t>());
  }

 private:
  static constexpr std::string_view scalar = " scalar";

  static bool isText(const tyve::Value& value) {
    return value.is(tyve::Kind::Char) || value.is(tyve::Kind::String) || value.is(tyve::Kind::Cell);
  }
  /// What the host makes of the text; itself when it cannot.
  tyve::Value memberOf(const tyve::Value& text) const {
    hostClass();  // brings the conversion
    return tyve::ClassSystem::getInstance().types().convert(text, className_).value_or(text);
  }
  const tyve::COSClassInfo& hostClass() const {
    return tyve::ClassSystem::getInstance().getClass(className_);
  }

  tyve::Name className_;
};

}  // namespace orb::zero::hb
