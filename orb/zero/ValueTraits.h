#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <boost/optional/optional.hpp>

#include <orb/zero/ModelElement.h>
#include <orb/zero/meta/ClassInfo.h>

namespace orb::zero {

/// What makes a type one that a `Value` holds: its name in the registry and the hash of a value. A
/// library specialises it for its own types, which also need `==`.
template <class T>
struct ValueTraits;

/// The traits of a number, whose hash is the number itself, sign-extended.
template <class T>
struct NumberTraits {
  static constexpr std::uint64_t hash(T value) noexcept {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(value));
  }
};
template <>
struct ValueTraits<bool> : NumberTraits<bool> {
  static constexpr std::string_view name() noexcept { return "Boolean"; }
};
template <>
struct ValueTraits<int> : NumberTraits<int> {
  static constexpr std::string_view name() noexcept { return "Integer"; }
};
template <>
struct ValueTraits<std::uint16_t> : NumberTraits<std::uint16_t> {
  static constexpr std::string_view name() noexcept { return "UInteger16"; }
};
template <>
struct ValueTraits<std::uint32_t> : NumberTraits<std::uint32_t> {
  static constexpr std::string_view name() noexcept { return "UInteger32"; }
};
template <>
struct ValueTraits<std::string> {
  static constexpr std::string_view name() noexcept { return "StdString"; }
  static std::uint64_t hash(const std::string& value) { return std::hash<std::string>()(value); }
};
template <>
struct ValueTraits<std::u16string> {
  static constexpr std::string_view name() noexcept { return "String"; }
  static std::uint64_t hash(const std::u16string& value) {
    return std::hash<std::u16string>()(value);
  }
};
template <>
struct ValueTraits<ModelElement> {
  static constexpr std::string_view name() noexcept { return "orb.zero.ModelElement"; }
  static std::uint64_t hash(const ModelElement& value) { return ElementHash()(value); }
};

/// How many values a `Value` holds.
enum class Multiplicity : std::uint8_t { One, Optional, Sequence, Set };

/// Takes a type apart: what it holds, how many, and the same number `Of` another type.
template <class T>
struct ValueForm {
  using Element = T;
  template <class E>
  using Of = E;
  static constexpr Multiplicity multiplicity = Multiplicity::One;
};
template <class T>
struct ValueForm<boost::optional<T>> {
  using Element = T;
  template <class E>
  using Of = boost::optional<E>;
  static constexpr Multiplicity multiplicity = Multiplicity::Optional;
};
template <class T>
struct ValueForm<std::vector<T>> {
  using Element = T;
  template <class E>
  using Of = std::vector<E>;
  static constexpr Multiplicity multiplicity = Multiplicity::Sequence;
};
template <class T>
struct ValueForm<std::set<T>> {
  using Element = T;
  template <class E>
  using Of = std::set<E>;
  static constexpr Multiplicity multiplicity = Multiplicity::Set;
};

template <class T>
concept ElementHandle = std::derived_from<T, ModelElement>;
template <class T>
using ValueElement = typename ValueForm<T>::Element;
/// What a value is stored as: handles of all classes as those of `ModelElement`.
template <class T>
using StoredAs = typename ValueForm<T>::template Of<
    std::conditional_t<ElementHandle<ValueElement<T>>, ModelElement, ValueElement<T>>>;
/// Whether a `Value` holds it. There is no set of elements, which have no order.
template <class T>
concept Valuable = requires {
  ValueTraits<ValueElement<StoredAs<T>>>::name();
}
&&!(ElementHandle<ValueElement<T>> && ValueForm<T>::multiplicity == Multiplicity::Set);

/// The name of what a `T` holds: dotted for classes and enumerations, plain for primitive types.
template <Valuable T>
std::string_view valueName() {
  if constexpr (ElementHandle<ValueElement<T>>)
    return ValueElement<T>::metaClass().name;
  else
    return ValueTraits<ValueElement<T>>::name();
}

}  // namespace orb::zero
