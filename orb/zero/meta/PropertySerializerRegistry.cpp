#include <orb/zero/meta/PropertySerializerRegistry.h>

#include <orb/zero/Exception.h>
#include <orb/zero/meta/MetaRegistry.h>

namespace orb::zero::meta {

PropertySerializer::~PropertySerializer() = default;

std::string PropertySerializer::serializeValue(const Value& value) const {
  std::string text;
  append(value, text);
  return text;
}

void PropertySerializer::checkType(const Type& type, std::string_view expected) {
  if (!type || type->getQualifiedName() != expected)
    raise("CannotCastIncompatibleTypes", {std::string(expected)});
}

void PropertySerializer::raiseNoValue(std::string_view text, std::string_view type) {
  raise("CannotParseValue", {std::string(text), std::string(type)});
}

PropertySerializerRegistry& PropertySerializerRegistry::getInstance() {
  return MetaRegistry::getInstance().getSerializers();
}

void PropertySerializerRegistry::registerPropertySerializer(const Type& type, Serializer serializer,
                                                            std::string_view key) {
  const std::lock_guard lock(mutex_);
  types_[type->getQualifiedName()].insert_or_assign(std::string(key), std::move(serializer));
}

PropertySerializerRegistry::Serializer PropertySerializerRegistry::find(
    std::string_view typeName, std::string_view key) const {
  const std::lock_guard lock(mutex_);
  const auto type = types_.find(typeName);
  if (type == types_.end()) return nullptr;
  const auto found = type->second.find(key);
  return found != type->second.end() ? found->second : nullptr;
}

void PropertySerializerRegistry::forget(std::string_view typeName) {
  if (const auto found = types_.find(typeName); found != types_.end()) types_.erase(found);
}

}  // namespace orb::zero::meta
