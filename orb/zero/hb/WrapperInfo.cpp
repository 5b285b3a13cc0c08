#include <orb/zero/hb/WrapperInfo.h>

#include <optional>
#include <span>
#include <utility>

#include <orb/zero/Exception.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/Value.h>
#include <orb/zero/hb/HostBuilder.h>
#include <orb/zero/hb/HostError.h>
#include <orb/zero/hb/HostObject.h>
#include <orb/zero/hb/MetaMarshalerRegistry.h>
#include <orb/zero/meta/Class.h>
#include <tyve/ClassSystem.h>
#include <tyve/factory/Marshaler.h>

namespace orb::zero::hb {
namespace {

using Arguments = std::span<const tyve::Value>;

tyve::Name any() { return tyve::intern("any"); }

/// The values for a new element and its UUID, in either order.
tyve::Value createElement(const meta::ClassInfo& type, tyve::Name name, Arguments given) {
  const Model model = modelOf(given.front());
  Transaction unit(model);  // values may be taken away from other elements
  BuilderPointer builder;
  std::optional<uuid> id;
  for (const tyve::Value& value : given.subspan(1)) {
    const bool isInit = value.is(tyve::Kind::Struct) && value.isScalar();
    if (isInit ? builder != nullptr : id.has_value()) raise("InvalidValue");
    if (isInit)
      builder = createBuilderFromStruct(type, model, value);
    else
      id = extractUuid(value);
  }
  if (!builder) builder = instantiateBuilder(type, model);
  const ModelElement made = id ? builder->create(*id) : builder->create();
  unit.commit();
  return toHost(made, name);
}

tyve::Value createInto(const meta::PropertyInfo& property, const meta::ClassInfo& ownerClass,
                       tyve::Name name, Arguments given) {
  const ModelElement owner = elementOf(given[0], ownerClass);
  const Model model = owner->getModel();
  const meta::ClassInfo& type = property.type();
  Transaction unit(model);
  const BuilderPointer builder = given.size() > 1 && given[1].is(tyve::Kind::Struct)
                                     ? createBuilderFromStructFirst(type, model, given[1])
                                     : instantiateBuilder(type, model);
  const uuid id = given.size() > 2 ? extractUuid(given[2]) : model.newUuid();
  const ModelElement made = owner->createInto(property, *builder, id);
  unit.commit();
  return toHost(made, name);
}

/// The marshaler of the keys of a collection; null when it has none.
const ValueMarshaler* keyMarshalerOf(const meta::PropertyInfo& property) {
  if (property.key.empty()) return nullptr;
  return MetaMarshalerRegistry::getInstance().findPropertyMarshaler(
      *property.type().find(property.key));
}

/// The marshaler of a property that holds one text; null for others.
const ValueMarshaler* textMarshalerOf(const meta::PropertyInfo& property) {
  if (property.kind != meta::ValueKind::Single) return nullptr;
  const ValueMarshaler* const marshaler =
      MetaMarshalerRegistry::getInstance().findPropertyMarshaler(property);
  const bool isText =
      marshaler && marshaler->getTypeWord().text() == tyve::factory::StringPolicy::word;
  return isText ? marshaler : nullptr;
}

}  // namespace

WrapperInfo::WrapperInfo(const meta::ClassInfo& type, std::string documentation, Access access,
                         std::string_view primitives, PropertyText propertyText)
    : tyve::COSClassInfo(hostName(type), std::move(documentation)),
      class_(type),
      propertyText_(propertyText) {
  if (type.superclass) addSuperclass(hostName(*type.superclass));
  tyve::factory::detail::initStringDataTypes();
  if (!type.isAbstract() && access == Access::Full) addElementConstructor();
  for (const meta::PropertyInfo& property : type.own)
    addElementProperty(property, access, primitives);
  addStaticMetaClass();
}

WrapperInfo::~WrapperInfo() = default;

std::string WrapperInfo::print(const tyve::Value& object) const {
  if (!object.isScalar()) return object.describe();
  const ModelElement element = elementOf(object, class_);
  const std::string& name = object.className().text();
  if (!element) return (element.get() ? "a deleted " : "an empty ") + name;
  std::string text = "<" + name;
  if (const auto* const property = element->getPropertyByName("name"))
    if (const auto* const marshaler = textMarshalerOf(*property))
      if (const Value given = element->getPropertyValue(*property); !given.isEmpty())
        text += " '" + marshaler->toHost(given).text() + "'";
  return text + " " + toString(element->getUuid()) + ">";
}

void WrapperInfo::addElementConstructor() {
  addConstructor(
      {"model opt_init opt_uuid", getName(), {tyve::intern("orb.zero.Model"), any(), any()}, 2},
      [this](Arguments given) {
        return asHost([&] { return createElement(class_, getName(), given); });
      },
      "Creates one in a model, from a struct of initial values and under a UUID, if given.");
}

void WrapperInfo::addElementProperty(const meta::PropertyInfo& property, Access access,
                                     std::string_view primitives) {
  const ValueMarshaler* const marshaler =
      MetaMarshalerRegistry::getInstance().findPropertyMarshaler(property);
  const bool isKeyed = property.kind == meta::ValueKind::Keyed;
  if (!marshaler || (isKeyed && !keyMarshalerOf(property))) return;
  const bool isWritable =
      access == Access::Full && !(property.flags & (meta::NoMutator | meta::ReadOnly));
  if (property.kind == meta::ValueKind::Single) return addSingle(property, *marshaler, isWritable);
  addCollection(property, *marshaler, primitives);
  if (property.isOwning && isWritable) addCreateInto(property);
}

void WrapperInfo::addSingle(const meta::PropertyInfo& property, const ValueMarshaler& marshaler,
                            bool isWritable) {
  tyve::Setter setter;
  if (isWritable)
    setter = [this, &property, &marshaler](const tyve::Value& object, const tyve::Value& value) {
      asHost([&] {
        elementOf(object, class_)->setPropertyValue(property, marshaler.fromHost(value));
      });
    };
  addProperty(
      tyve::intern(property.name),
      [this, &property, &marshaler](const tyve::Value& object) {
        return asHost([&] {
          return marshaler.toHost(elementOf(object, class_)->getPropertyValue(property));
        });
      },
      std::move(setter), {}, std::string(propertyText_(property)), marshaler.getTypeWord());
}

void WrapperInfo::addCollection(const meta::PropertyInfo& property, const ValueMarshaler& items,
                                std::string_view primitives) {
  const auto name = property.type ? CollectionClass::nameFor(property) : primitives;
  views_.push_back(std::make_unique<const CollectionView>(
      CollectionView{property, tyve::intern(name), items, keyMarshalerOf(property)}));
  addProperty(
      tyve::intern(property.name),
      [this, &view = *views_.back()](const tyve::Value& object) {
        return asHost([&] {
          return tyve::ClassSystem::getInstance().announce(
              std::make_shared<const CollectionObject>(elementOf(object, class_), view),
              view.className);
        });
      },
      {}, {}, std::string(propertyText_(property)),
      tyve::intern(property.type ? "orb.zero.Set" : primitives));
}

void WrapperInfo::addCreateInto(const meta::PropertyInfo& property) {
  const meta::ClassInfo& type = property.type();
  std::string name(property.name);
  if (name.front() >= 'a' && name.front() <= 'z')
    name.front() = static_cast<char>(name.front() - 'a' + 'A');
  addMethod(
      tyve::intern("createInto" + name),
      {{}, hostName(type), {getName(), any(), tyve::intern("char")}, 2},
      [this, &property, item = hostName(type)](Arguments given) {
        return asHost([&] { return createInto(property, class_, item, given); });
      },
      "Creates an element into `" + std::string(property.name) +
          "`, from a struct of initial values and under a UUID, if given.");
}

void WrapperInfo::addStaticMetaClass() {
  const tyve::Name description = hostName(meta::Class::metaClass());
  addStaticMethod(
      tyve::intern("StaticMetaClass"), {{}, description, {}},
      [this, description](Arguments) {
        return asHost([&] { return toHost(meta::Class(class_), description); });
      },
      "The description of the class.");
}

}  // namespace orb::zero::hb
