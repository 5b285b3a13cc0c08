#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include <orb/zero/meta/PropertySerializer.h>

namespace orb::zero {
namespace meta {

/// Knows the serializers of all types that can be saved. A type has one by default and may have
/// others under keys of their own. The registry of the types has it, and guards it by its mutex.
class ORB_ZERO_API PropertySerializerRegistry {
 public:
  using Serializer = std::shared_ptr<const PropertySerializer>;

  static PropertySerializerRegistry& getInstance();
  PropertySerializerRegistry(const PropertySerializerRegistry&) = delete;
  PropertySerializerRegistry& operator=(const PropertySerializerRegistry&) = delete;

  /// Takes the place of one with the same key. The type has its registered name already.
  void registerPropertySerializer(const Type& type, Serializer serializer,
                                  std::string_view key = {});
  /// The serializer for values of this type, see `PropertyInfo::typeName`; null when there is none.
  Serializer find(std::string_view typeName, std::string_view key = {}) const;

 private:
  friend class MetaRegistry;
  using Keys = std::map<std::string, Serializer, std::less<>>;
  using Types = std::map<std::string, Keys, std::less<>>;

  explicit PropertySerializerRegistry(std::recursive_mutex& mutex) noexcept : mutex_(mutex) {}
  ~PropertySerializerRegistry() = default;
  void forget(std::string_view typeName);

  std::recursive_mutex& mutex_;
  Types types_;
};

}  // namespace meta

using meta::PropertySerializerRegistry;

}  // namespace orb::zero
