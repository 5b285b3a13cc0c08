#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>

#include <orb/zero/hb/Forwarding.h>
#include <tyve/COSClassInfo.h>

namespace orb::zero::hb {

/// The host class `X::hostClass`, told by functions, the types of whose arguments and results make
/// the signatures. Those of instances begin with the object.
template <class X>
class NativeClass final : public tyve::COSClassInfo {
 public:
  explicit NativeClass(std::string documentation)
      : tyve::COSClassInfo(tyve::intern(X::hostClass), std::move(documentation)) {
    tyve::factory::detail::initStringDataTypes();
  }

  template <class Function>
  void constructor(std::string documentation, Function function) {
    const Forwarding forwarding(function);
    addConstructor(forwarding.signature({}, {}), forwarding, std::move(documentation));
  }
  /// `names` are those of the arguments behind the object.
  template <class Function>
  void method(std::string_view name, std::string_view names, std::string documentation,
              Function function, CallTraits traits = {}) {
    const Forwarding forwarding(function);
    const std::string all = std::string("self").append(names.empty() ? "" : " ").append(names);
    addMethod(tyve::intern(name), forwarding.signature(all, traits), forwarding,
              std::move(documentation));
  }
  template <class Function>
  void staticMethod(std::string_view name, std::string_view names, std::string documentation,
                    Function function, CallTraits traits = {}) {
    const Forwarding forwarding(function);
    addStaticMethod(tyve::intern(name), forwarding.signature(names, traits), forwarding,
                    std::move(documentation));
  }
  template <class Getter>
  void property(std::string_view name, std::string documentation, Getter getter) {
    property(name, std::move(documentation), getter, {}, {});
  }
  template <class Getter, class Setter>
  void property(std::string_view name, std::string documentation, Getter getter, Setter setter) {
    const Forwarding forwarding(setter);
    property(
        name, std::move(documentation), getter,
        [forwarding](const tyve::Value& object, const tyve::Value& value) {
          const tyve::Value given[] = {object, value};
          forwarding(given);
        },
        forwarding.signature({}, {}).arguments[1]);
  }

 private:
  template <class Getter>
  void property(std::string_view name, std::string documentation, Getter getter,
                tyve::Setter setter, tyve::Name type) {
    const Forwarding forwarding(getter);
    addProperty(
        tyve::intern(name),
        [forwarding](const tyve::Value& object) { return forwarding(std::span(&object, 1)); },
        std::move(setter), type, std::move(documentation), forwarding.signature({}, {}).result);
  }
};

}  // namespace orb::zero::hb
