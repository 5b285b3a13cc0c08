#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <orb/zero/meta/PropertySerializer.h>

namespace orb::zero::io {

/// What saving and loading do with a property.
struct PropertyPlan {
  enum class Kind : std::uint8_t { Transient, Value, Values, Reference, References, Owned, Keyed };

  const meta::PropertyInfo* info;
  Kind kind;
  std::shared_ptr<const meta::PropertySerializer> serializer;  ///< of the values or the keys
  const meta::PropertyInfo* key;                               ///< of what is owned under keys
  std::string opening;                                         ///< `,"name":`
};

/// What saving and loading do with the elements of a class.
struct ClassPlan {
  explicit ClassPlan(const meta::ClassInfo& described);

  const meta::ClassInfo& type;
  std::vector<PropertyPlan> properties;  ///< in order of their positions
  std::string opening;                   ///< `{"torvan.datamodel.Variable":"`
};

/// The plans of one save or load, each made when its class is met first.
class ClassPlans {
 public:
  const ClassPlan& of(const meta::ClassInfo& type);
  /// By the dotted name of the class; null when no such class is registered.
  const ClassPlan* find(std::string_view name);

  /// The URIs of the root packages of the classes met so far, in order.
  std::vector<std::string> uris() const;

 private:
  std::unordered_map<std::string_view, ClassPlan> plans_;
  const ClassPlan* last_ = nullptr;
};

}  // namespace orb::zero::io
