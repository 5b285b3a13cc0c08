#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <orb/zero/Value.h>
#include <orb/zero/hb/HostError.h>
#include <orb/zero/hb/HostObject.h>
#include <orb/zero/hb/MetaMarshalerRegistry.h>
#include <orb/zero/hb/PolicyBasedValueMarshaler.h>
#include <orb/zero/hb/WrapperInfo.h>
#include <tyve/ClassSystem.h>
#include <tyve/factory/Marshaler.h>

namespace orb::zero::hb {

/// How an argument or a result of type T passes between an operation and the host: its type word
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

/// The host class of the elements of class T.
template <class T>
class ORB0WrapperInfo : public WrapperInfo {
 public:
  explicit ORB0WrapperInfo(std::string documentation, Access access = Access::Full,
                           std::string_view primitives = "orb.zero.PrimitiveSequence")
      : WrapperInfo(T::metaClass(), std::move(documentation), access, primitives) {}

  /// Between the host object and a handle; see `elementOf` and `hb::toHost`.
  static T fromHost(const tyve::Value& object) { return Passing<T>::fromHost(object); }
  static tyve::Value toHost(const T& handle) { return Passing<T>::toHost(handle); }

 protected:
  /// Adds a method that calls the operation, given as a method of the handle. The signature follows
  /// from its types; so many arguments at the end may be left out, and are 0 or empty then.
  /// `Declared` is the class of the result, where T knows it better than the operation.
  template <auto operation, class Declared = void>
  void addOperation(std::string_view name, std::string documentation, std::size_t optional = 0) {
    addMethod(tyve::intern(name), Operation<operation, Declared>::signature(optional),
              Operation<operation, Declared>(), std::move(documentation));
  }

 private:
  /// What the method calls: converts the receiver and the arguments, and the result.
  template <auto operation, class Declared, class Method = decltype(operation)>
  struct Operation;
};

template <class T>
template <auto operation, class Declared, class R, class C, class... A>
struct ORB0WrapperInfo<T>::Operation<operation, Declared, R (C::*)(A...) const> {
  using Result = std::conditional_t<std::is_void_v<Declared>, R, Declared>;

  static tyve::Signature signature(std::size_t optional) {
    return {{},
            Passing<Result>::word(),
            {Passing<T>::word(), Passing<std::remove_cvref_t<A>>::word()...},
            optional};
  }
  tyve::Value operator()(std::span<const tyve::Value> given) const {
    return asHost([&] { return call(given, std::index_sequence_for<A...>()); });
  }

 private:
  template <class Argument>
  static Argument argument(std::span<const tyve::Value> given, std::size_t place) {
    return place < given.size() ? Passing<Argument>::fromHost(given[place]) : Argument();
  }
  template <std::size_t... I>
  static tyve::Value call(std::span<const tyve::Value> given, std::index_sequence<I...>) {
    const T receiver = fromHost(given[0]);
    return Passing<Result>::toHost(
        Result((receiver.*operation)(argument<std::remove_cvref_t<A>>(given, I + 1)...)));
  }
};

}  // namespace orb::zero::hb
