#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include <orb/zero/hb/ValueMarshaler.h>
#include <orb/zero/meta/Type.h>

namespace orb::zero::hb {

/// Knows how the values of properties are converted, by their type. It has the marshalers of the
/// framework's own types and of all classes; libraries add those of their types. Marshalers live as
/// long as the process. Guarded by a mutex of its own.
class ORB_ZERO_HB_API MetaMarshalerRegistry {
 public:
  static MetaMarshalerRegistry& getInstance();
  MetaMarshalerRegistry(const MetaMarshalerRegistry&) = delete;
  MetaMarshalerRegistry& operator=(const MetaMarshalerRegistry&) = delete;

  /// The marshaler of the type. Raises "NoSuchType" with its name when there is none.
  const ValueMarshaler& getPropertyMarshaler(const meta::Type& type);
  /// The same by the name of a type that is no class (see `valueName`).
  const ValueMarshaler& getPropertyMarshaler(std::string_view typeName);
  /// The marshaler of the property's values; null when they have no form in the host.
  const ValueMarshaler* findPropertyMarshaler(const meta::PropertyInfo& property);
  /// The property of this name that the host can give a value. Raises "NoSuchProperty" with class
  /// and name when there is none.
  struct HostProperty {
    const meta::PropertyInfo& property;
    const ValueMarshaler& marshaler;
  };
  HostProperty getProperty(const meta::ClassInfo& type, const std::string& name);
  /// The marshaler of handles to elements of the class.
  const ValueMarshaler& getElementMarshaler(const meta::ClassInfo& type);

  /// Adds the marshaler of the type with this name, unless there is one.
  void registerPropertyMarshaler(std::string_view typeName,
                                 std::unique_ptr<const ValueMarshaler> marshaler);

 private:
  MetaMarshalerRegistry();
  ~MetaMarshalerRegistry() = default;
  template <class... T>
  void registerPolicyBased();
  const ValueMarshaler* find(std::string_view typeName) const;

  mutable std::mutex mutex_;
  std::map<std::string, std::unique_ptr<const ValueMarshaler>, std::less<>> marshalers_;
};

}  // namespace orb::zero::hb
