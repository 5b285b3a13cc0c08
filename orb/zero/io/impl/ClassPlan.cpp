#include <orb/zero/io/impl/ClassPlan.h>

#include <set>

#include <orb/zero/meta/AbstractMetaPackage.h>
#include <orb/zero/meta/MetaRegistry.h>
#include <orb/zero/meta/PropertySerializerRegistry.h>

namespace orb::zero::io {
namespace {

using Kind = PropertyPlan::Kind;

using Serializer = meta::PropertySerializerRegistry::Serializer;

Serializer serializerOf(const meta::PropertyInfo& property) {
  if (property.type) return nullptr;
  return meta::PropertySerializerRegistry::getInstance().find(property.typeName());
}

Kind kindOf(const meta::PropertyInfo& property, const Serializer& serializer) {
  const bool isSingle = property.kind == meta::ValueKind::Single;
  if (property.flags & meta::Transient) return Kind::Transient;
  if (property.kind == meta::ValueKind::Keyed) return Kind::Keyed;
  if (property.isOwning) return Kind::Owned;
  if (property.type) return isSingle ? Kind::Reference : Kind::References;
  if (serializer && serializer->isTransient()) return Kind::Transient;
  return isSingle ? Kind::Value : Kind::Values;
}

PropertyPlan planOf(const meta::PropertyInfo& property) {
  const meta::PropertyInfo* const key =
      property.key.empty() ? nullptr : property.type().find(property.key);
  Serializer serializer = serializerOf(key ? *key : property);
  const Kind kind = kindOf(property, serializer);
  return {&property, kind, std::move(serializer), key, ",\"" + std::string(property.name) + "\":"};
}

}  // namespace

ClassPlan::ClassPlan(const meta::ClassInfo& described)
    : type(described), opening("{\"" + std::string(type.name) + "\":\"") {
  type.package().ensureInitialized();  // registers the serializers
  for (const meta::PropertyInfo* property : type.all) properties.push_back(planOf(*property));
}

const ClassPlan& ClassPlans::of(const meta::ClassInfo& type) {
  if (!last_ || &last_->type != &type) last_ = &plans_.try_emplace(type.name, type).first->second;
  return *last_;
}

const ClassPlan* ClassPlans::find(std::string_view name) {
  if (last_ && last_->type.name == name) return last_;
  if (const auto known = plans_.find(name); known != plans_.end()) return last_ = &known->second;
  const meta::ClassInfo* const type = meta::MetaRegistry::getInstance().findRecord(name);
  return type ? &of(*type) : nullptr;
}

std::vector<std::string> ClassPlans::uris() const {
  std::set<std::string> uris;
  for (const auto& [name, plan] : plans_) uris.insert(toUtf8(plan.type.package().getUri()));
  return {uris.begin(), uris.end()};
}

}  // namespace orb::zero::io
