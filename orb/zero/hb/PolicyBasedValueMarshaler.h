#pragma once

#include <concepts>
#include <cstdint>
#include <string>

#include <orb/zero/hb/TypedValueMarshaler.h>

namespace orb::zero::hb {

/// A text in UTF-16 as a string.
struct ORB_ZERO_HB_API Utf16Policy {
  using Native = std::u16string;
  static constexpr std::string_view word = tyve::factory::StringPolicy::word;
  static std::optional<Native> fromHost(const tyve::Value& value);
  static tyve::Value toHost(const Native& native);
};

/// A number that the host has no integral type for.
struct ORB_ZERO_HB_API UInteger32Policy {
  using Native = std::uint32_t;
  static constexpr std::string_view word = "double scalar";
  static std::optional<Native> fromHost(const tyve::Value& value);
  static tyve::Value toHost(Native native) { return tyve::Value::scalar<double>(native); }
};

/// The policy by which the host converts a T; none for enumerations, which convert by their class.
template <class T>
struct PolicyOf {
  using Type = void;
};
template <>
struct PolicyOf<bool> {
  using Type = tyve::factory::LogicalPolicy;
};
template <>
struct PolicyOf<std::uint16_t> {
  using Type = tyve::factory::IntegerPolicy<std::uint16_t>;
};
template <>
struct PolicyOf<std::int32_t> {
  using Type = tyve::factory::IntegerPolicy<std::int32_t>;
};
template <>
struct PolicyOf<std::uint32_t> {
  using Type = UInteger32Policy;
};
template <>
struct PolicyOf<std::string> {
  using Type = tyve::factory::StringPolicy;
};
template <>
struct PolicyOf<std::u16string> {
  using Type = Utf16Policy;
};

/// Converts single values of T by its policy, and several by the kind of host array that holds
/// them.
template <class T, class Policy = typename PolicyOf<T>::Type>
class PolicyBasedValueMarshaler : public TypedValueMarshaler<T> {
 public:
  PolicyBasedValueMarshaler() : TypedValueMarshaler<T>(tyve::intern(Policy::word)) {}

 protected:
  tyve::Value one(const T& value) const override { return Policy::toHost(value); }
  tyve::Value many(const std::vector<T>& values) const override {
    if constexpr (std::same_as<T, std::string>) {
      return tyve::Value::strings(values);
    } else if constexpr (tyve::Number<T> && !std::same_as<T, bool>) {
      return tyve::Value::row<T>(values);
    } else {
      std::vector<tyve::Value> cells;
      for (const T& value : values) cells.push_back(Policy::toHost(value));
      return tyve::Value::cell(std::move(cells));
    }
  }
  T read(const tyve::Value& value) const override {
    return tyve::factory::Marshaler<Policy>::fromHost(value);
  }
};

/// The same without a policy: all is left to the class derived from it.
template <class T>
class PolicyBasedValueMarshaler<T, void> : public TypedValueMarshaler<T> {
 public:
  using TypedValueMarshaler<T>::TypedValueMarshaler;
};

}  // namespace orb::zero::hb
