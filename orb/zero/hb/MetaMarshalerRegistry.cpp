#include <orb/zero/hb/MetaMarshalerRegistry.h>

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <orb/zero/Exception.h>
#include <orb/zero/Text.h>
#include <orb/zero/hb/HostObject.h>
#include <orb/zero/hb/PolicyBasedValueMarshaler.h>
#include <orb/zero/meta/Class.h>
#include <tyve/ClassSystem.h>

namespace orb::zero::hb {

ValueMarshaler::~ValueMarshaler() = default;

std::optional<std::u16string> Utf16Policy::fromHost(const tyve::Value& value) {
  const auto text = tyve::factory::StringPolicy::fromHost(value);
  return text ? std::optional(toUtf16(*text)) : std::nullopt;
}
tyve::Value Utf16Policy::toHost(const std::u16string& native) {
  return tyve::factory::StringPolicy::toHost(toUtf8(native));
}

std::optional<std::uint32_t> UInteger32Policy::fromHost(const tyve::Value& value) {
  if (const auto small = tyve::factory::IntegerPolicy<std::uint16_t>::fromHost(value))
    return *small;
  if (!value.is(tyve::Kind::Double) || !value.isScalar()) return std::nullopt;
  const auto number = value.number<double>();
  const bool fits = number >= 0 && number <= std::numeric_limits<std::uint32_t>::max() &&
                    number == static_cast<double>(static_cast<std::uint32_t>(number));
  return fits ? std::optional(static_cast<std::uint32_t>(number)) : std::nullopt;
}

ElementMarshaler::ElementMarshaler(const meta::ClassInfo& type)
    : ValueMarshaler(hostName(type)), class_(type) {}

tyve::Value ElementMarshaler::toHost(const Value& value) const {
  if (value.isEmpty() || value.type()->multiplicity == Multiplicity::One)
    return hb::toHost(value.isEmpty() ? ModelElement() : value.getValue<ModelElement>(),
                      getTypeWord());
  std::vector<tyve::Value> objects;
  for (ModelElement& element : value.getValue<std::vector<ModelElement>>())
    objects.push_back(hb::toHost(std::move(element), getTypeWord()));
  return tyve::ClassSystem::getInstance().makeHeterogeneous(std::move(objects));
}

Value ElementMarshaler::fromHost(const tyve::Value& value) const {
  return elementOf(value, class_);
}

Value ElementMarshaler::fromHostMany(const tyve::Value& value) const {
  std::vector<ModelElement> elements;
  forEach(value, [&](const tyve::Value& item) { elements.push_back(elementOf(item, class_)); });
  return elements;
}

template <class... T>
void MetaMarshalerRegistry::registerPolicyBased() {
  (registerPropertyMarshaler(valueName<T>(), std::make_unique<PolicyBasedValueMarshaler<T>>()),
   ...);
}

MetaMarshalerRegistry::MetaMarshalerRegistry() {
  registerPolicyBased<bool, int, std::uint16_t, std::uint32_t, std::string, std::u16string>();
}

MetaMarshalerRegistry& MetaMarshalerRegistry::getInstance() {
  static auto& instance = *new MetaMarshalerRegistry;  // host classes refer to its marshalers
  return instance;
}

const ValueMarshaler* MetaMarshalerRegistry::find(std::string_view typeName) const {
  const std::lock_guard lock(mutex_);
  const auto found = marshalers_.find(typeName);
  return found == marshalers_.end() ? nullptr : found->second.get();
}

const ValueMarshaler& MetaMarshalerRegistry::getPropertyMarshaler(const meta::Type& type) {
  if (type->getMetaClass().isKindOf(meta::Class::metaClass()))
    return getElementMarshaler(meta::Class(type));
  return getPropertyMarshaler(type->getQualifiedName());
}

const ValueMarshaler& MetaMarshalerRegistry::getPropertyMarshaler(std::string_view typeName) {
  const ValueMarshaler* const marshaler = find(typeName);
  if (!marshaler) raise("NoSuchType", {std::string(typeName)});
  return *marshaler;
}

const ValueMarshaler* MetaMarshalerRegistry::findPropertyMarshaler(
    const meta::PropertyInfo& property) {
  return property.type ? &getElementMarshaler(property.type()) : find(property.typeName());
}

MetaMarshalerRegistry::HostProperty MetaMarshalerRegistry::getProperty(const meta::ClassInfo& type,
                                                                       const std::string& name) {
  const meta::PropertyInfo* const property = type.find(std::string_view(name));
  const ValueMarshaler* const marshaler = property ? findPropertyMarshaler(*property) : nullptr;
  if (!marshaler) raise("NoSuchProperty", {std::string(type.name), name});
  return {*property, *marshaler};
}

const ValueMarshaler& MetaMarshalerRegistry::getElementMarshaler(const meta::ClassInfo& type) {
  if (const ValueMarshaler* const known = find(type.name)) return *known;
  registerPropertyMarshaler(type.name, std::make_unique<ElementMarshaler>(type));
  return *find(type.name);
}

void MetaMarshalerRegistry::registerPropertyMarshaler(
    std::string_view typeName, std::unique_ptr<const ValueMarshaler> marshaler) {
  const std::lock_guard lock(mutex_);
  marshalers_.try_emplace(std::string(typeName), std::move(marshaler));
}

}  // namespace orb::zero::hb
