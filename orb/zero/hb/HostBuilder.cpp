#include <orb/zero/hb/HostBuilder.h>

#include <optional>
#include <string>

#include <orb/zero/Exception.h>
#include <orb/zero/MessageCatalog.h>
#include <orb/zero/Value.h>
#include <orb/zero/hb/MetaMarshalerRegistry.h>
#include <tyve/factory/Marshaler.h>

namespace orb::zero::hb {
namespace {

void setFromHost(ModelElement::Builder& builder, const std::string& name,
                 const tyve::Value& value) {
  const auto& [property, marshaler] =
      MetaMarshalerRegistry::getInstance().getProperty(builder.getMetaClass(), name);
  builder.setOrAdd(property, property.kind == meta::ValueKind::Single
                                 ? marshaler.fromHost(value)
                                 : marshaler.fromHostMany(value));
}

}  // namespace

BuilderPointer instantiateBuilder(const meta::ClassInfo& type, const Model& model) {
  if (!type.makeBuilder) raise("InvalidValue");
  return type.makeBuilder(model);
}

BuilderPointer createBuilderFromStruct(const meta::ClassInfo& type, const Model& model,
                                       const tyve::Value& structure) {
  if (!structure.is(tyve::Kind::Struct) || !structure.isScalar()) raise("InvalidValue");
  BuilderPointer builder = instantiateBuilder(type, model);
  const auto fields = structure.fields();
  for (std::size_t i = 0; i < fields.size(); ++i)
    setFromHost(*builder, fields[i], structure.field(i));
  return builder;
}

BuilderPointer createBuilderFromStructFirst(const meta::ClassInfo& type, const Model& model,
                                            const tyve::Value& structures) {
  if (!structures.is(tyve::Kind::Struct) || structures.isEmpty()) raise("InvalidValue");
  return createBuilderFromStruct(type, model, structures.at(0));
}

uuid extractUuid(const tyve::Value& value) {
  const auto text = tyve::factory::CharPolicy::fromHost(value);
  const std::optional<uuid> id = text ? parseUuid(*text) : std::nullopt;
  if (id) return *id;
  const std::string catalog(frameworkCatalog), identifier = "InvalidValue";
  throw Exception(catalog, identifier, {},
                  MessageCatalog::text(catalog, identifier, {value.describe(), "this is no UUID"}));
}

}  // namespace orb::zero::hb
