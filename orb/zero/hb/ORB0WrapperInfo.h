#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <orb/zero/hb/Forwarding.h>
#include <orb/zero/hb/WrapperInfo.h>

namespace orb::zero::hb {

/// The host class of the elements of class T.
template <class T>
class ORB0WrapperInfo : public WrapperInfo {
 public:
  explicit ORB0WrapperInfo(std::string documentation, Access access = Access::Full,
                           std::string_view primitives = "orb.zero.PrimitiveSequence",
                           PropertyText propertyText = &noText)
      : WrapperInfo(T::metaClass(), std::move(documentation), access, primitives, propertyText) {}

  /// Between the host object and a handle; see `elementOf` and `hb::toHost`.
  static T fromHost(const tyve::Value& object) { return Passing<T>::fromHost(object); }
  static tyve::Value toHost(const T& handle) { return Passing<T>::toHost(handle); }

 protected:
  /// Adds a method that calls the operation, given as a method of the handle. `Declared` is the
  /// class of the result, where T knows it better than the operation.
  template <auto operation, class Declared = void>
  void addOperation(std::string_view name, std::string documentation, CallTraits traits = {}) {
    const auto forwarding = Forwarding(callOf<Declared, operation>(operation));
    addMethod(tyve::intern(name), forwarding.signature({}, traits), forwarding,
              std::move(documentation));
  }

 private:
  template <class Declared, auto operation, class R, class C, class... A>
  static auto callOf(R (C::*)(A...) const) {
    using Result = std::conditional_t<std::is_void_v<Declared>, R, Declared>;
    return [](const T& receiver, const std::remove_cvref_t<A>&... arguments) -> Result {
      return Result(std::invoke(operation, receiver, arguments...));
    };
  }
};

}  // namespace orb::zero::hb
