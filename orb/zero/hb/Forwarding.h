#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <orb/zero/Value.h>
#include <orb/zero/hb/HostError.h>
#include <orb/zero/hb/HostObject.h>
#include <orb/zero/hb/MetaMarshalerRegistry.h>
#include <orb/zero/hb/PolicyBasedValueMarshaler.h>
#include <tyve/ClassSystem.h>
#include <tyve/factory/Marshaler.h>

namespace orb::zero::hb {

/// How an argument or a result of type T passes between a function and the host: its type word
/// and the conversions, of values in the form that the word promises.
template <class Policy>
struct PolicyPassing {
  static tyve::Name word() { return tyve::intern(Policy::word); }
  static auto fromHost(const tyve::Value& value) {
    return tyve::factory::Marshaler<Policy>::fromHost(value);
  }
  static tyve::Value toHost(const typename Policy::Native& native) {
    return Policy::toHost(native);
  }
};
template <class T>
struct Passing;
template <>
struct Passing<bool> : PolicyPassing<tyve::factory::LogicalPolicy> {};
template <>
struct Passing<std::uint16_t> : PolicyPassing<tyve::factory::IntegerPolicy<std::uint16_t>> {};
template <>
struct Passing<std::int32_t> : PolicyPassing<tyve::factory::IntegerPolicy<std::int32_t>> {};
template <>
struct Passing<std::string> : PolicyPassing<tyve::factory::CharPolicy> {};
template <>
struct Passing<std::vector<std::string>> : PolicyPassing<tyve::factory::StringCollectionPolicy> {};
template <ElementHandle H>
struct Passing<H> {
  static tyve::Name word() {
    static const tyve::Name name = hostName(H::metaClass());
    return name;
  }
  static H fromHost(const tyve::Value& value) { return handleOf<H>(value); }
  static tyve::Value toHost(H element) { return hb::toHost(std::move(element), word()); }
};
/// An argument that is an element, or none: the empty object without a class means that, too.
template <ElementHandle H>
struct OrNone {
  operator const H&() const noexcept { return element; }

  H element;
};
template <ElementHandle H>
struct Passing<OrNone<H>> {
  static tyve::Name word() {
    return tyve::intern(Passing<H>::word().text() + std::string(tyve::factory::orNone));
  }
  static OrNone<H> fromHost(const tyve::Value& value) { return {Passing<H>::fromHost(value)}; }
};
/// Several elements are one array of their common class; none are the classless empty object.
template <ElementHandle H>
struct Passing<std::vector<H>> {
  static tyve::Name word() { return Passing<H>::word(); }
  static tyve::Value toHost(const std::vector<H>& elements) {
    std::vector<tyve::Value> objects;
    objects.reserve(elements.size());
    for (const H& element : elements) objects.push_back(Passing<H>::toHost(element));
    return tyve::ClassSystem::getInstance().makeHeterogeneous(std::move(objects));
  }
};
template <class E>
requires std::is_enum_v<E>
struct Passing<E> {
  static tyve::Name word() { return marshaler().getTypeWord(); }
  static tyve::Value toHost(E value) { return marshaler().toHost(value); }

 private:
  static const ValueMarshaler& marshaler() {
    static const ValueMarshaler& known =
        MetaMarshalerRegistry::getInstance().getPropertyMarshaler(valueName<E>());
    return known;
  }
};
template <>
struct Passing<Model> {
  static tyve::Name word() { return tyve::intern(ModelObject::hostClass); }
  static Model fromHost(const tyve::Value& value) { return modelOf(value); }
  static tyve::Value toHost(Model model) { return hb::toHost(std::move(model)); }
};
/// A value of the host as it is.
template <>
struct Passing<tyve::Value> {
  static tyve::Name word() { return tyve::intern("any"); }
  static tyve::Value fromHost(const tyve::Value& value) { return value; }
  static tyve::Value toHost(tyve::Value value) { return value; }
};
/// What may be left out.
template <class T>
struct Passing<std::optional<T>> {
  static tyve::Name word() { return Passing<T>::word(); }
  static std::optional<T> fromHost(const tyve::Value& value) { return Passing<T>::fromHost(value); }
};
/// An object of the class `X::hostClass`.
template <std::derived_from<tyve::NativeObject> X>
struct Passing<X> {
  static tyve::Name word() { return tyve::intern(X::hostClass); }
  static const X& fromHost(const tyve::Value& value) {
    const tyve::NativeObject& native = *value.native();
    if (typeid(native) != typeid(X))
      raise("CannotCastIncompatibleTypes", {std::string(X::hostClass)});
    return static_cast<const X&>(native);
  }
};
template <std::derived_from<tyve::NativeObject> X>
struct Passing<std::shared_ptr<X>> {
  static tyve::Name word() { return Passing<X>::word(); }
  static tyve::Value toHost(std::shared_ptr<const X> object) {
    return tyve::ClassSystem::getInstance().announce(std::move(object), word());
  }
};
template <>
struct Passing<void> {
  static tyve::Name word() { return {}; }
};

template <class T>
inline constexpr bool isVector = false;
template <class T>
inline constexpr bool isVector<std::vector<T>> = true;

/// What does not follow from the types of a function; see `tyve::Signature`. Arguments that are
/// left out are those of the default constructor.
struct CallTraits {
  std::size_t optional = 0;
  bool isLong = false;
};

/// The type of how a function or a function object is called.
template <class Function>
struct CallOf {
  using Type = decltype(&Function::operator());
};
template <class R, class... A>
struct CallOf<R (*)(A...)> {
  using Type = R (CallOf::*)(A...) const;
};

/// What the host calls to call a function: converts the arguments and the result, and passes on
/// failures of elements as its own.
template <class Function, class Call = typename CallOf<Function>::Type>
class Forwarding;
template <class Function, class C, class R, class... A>
class Forwarding<Function, R (C::*)(A...) const> {
 public:
  using Result = R;

  explicit Forwarding(Function function) : function_(std::move(function)) {}

  static tyve::Signature signature(std::string_view argumentNames, CallTraits traits) {
    return {std::string(argumentNames),
            Passing<R>::word(),
            {Passing<std::remove_cvref_t<A>>::word()...},
            traits.optional,
            traits.isLong,
            false,
            isVector<R>};
  }
  tyve::Value operator()(std::span<const tyve::Value> given) const {
    return asHost([&] { return call(given, std::index_sequence_for<A...>()); });
  }

 private:
  template <class Argument>
  static decltype(auto) argument(std::span<const tyve::Value> given, std::size_t place) {
    using Converted = decltype(Passing<Argument>::fromHost(given[place]));
    if constexpr (std::default_initializable<Argument> && !std::is_reference_v<Converted>)
      return place < given.size() ? Passing<Argument>::fromHost(given[place]) : Argument();
    else
      return Passing<Argument>::fromHost(given[place]);
  }
  template <std::size_t... I>
  tyve::Value call(std::span<const tyve::Value> given, std::index_sequence<I...>) const {
    if constexpr (std::is_void_v<R>) {
      function_(argument<std::remove_cvref_t<A>>(given, I)...);
      return {};
    } else {
      return Passing<R>::toHost(function_(argument<std::remove_cvref_t<A>>(given, I)...));
    }
  }

  Function function_;
};
template <class Function>
Forwarding(Function) -> Forwarding<Function>;

}  // namespace orb::zero::hb
