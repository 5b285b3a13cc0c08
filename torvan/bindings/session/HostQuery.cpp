#include <torvan/bindings/session/impl/HostQuery.h>

#include <memory>
#include <string>
#include <utility>

#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/MetaRegistry.h>
#include <orb/zero/query/Query.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel::hb {
namespace {

/// Tests one property by reflection.
class HasValue final : public query::Constraint::Node {
 public:
  HasValue(const meta::PropertyInfo& property, orb::zero::Value wanted)
      : property_(property), wanted_(std::move(wanted)) {}

  void select(query::Constraint::Elements& elements) const override {
    std::erase_if(elements, [&](const ModelElement::Impl* element) { return !holds(*element); });
  }
  void check(const meta::ClassInfo&) const override {}

 private:
  bool holds(const ModelElement::Impl& element) const {
    if (property_.kind == meta::ValueKind::Single)
      return element.getPropertyValue(property_) == wanted_;
    const auto& services = property_.services;
    for (std::size_t i = 0; i < services.size(element); ++i)
      if (services.at(element, i, orb::zero::ProxyTag::Resolve) == wanted_) return true;
    return false;
  }

  const meta::PropertyInfo& property_;
  orb::zero::Value wanted_;
};

query::Constraint constraintOf(const meta::ClassInfo& type, const std::string& name,
                               const tyve::Value& value) {
  const auto& [property, marshaler] =
      orb::zero::hb::MetaMarshalerRegistry::getInstance().getProperty(type, name);
  orb::zero::Value given = marshaler.fromHost(value);
  if (property.type && property.kind != meta::ValueKind::Single)
    return query::ElementCollection(property).contains(given.getValue<ModelElement>());
  return query::Constraint(std::make_shared<HasValue>(property, std::move(given)));
}

const meta::ClassInfo& classOf(const tyve::Value& type) {
  if (!type.is(tyve::Kind::Char) && !type.is(tyve::Kind::String))
    return orb::zero::hb::handleOf<meta::Class>(type);
  const auto* const info = meta::MetaRegistry::getInstance().findRecord(type.text());
  if (!info) orb::zero::raise("NoSuchType", {type.text()});
  return *info;
}

}  // namespace

List findElements(const orb::zero::Model& model, const tyve::Value& type,
                  const tyve::Value& filter) {
  const meta::ClassInfo& info = classOf(type);
  query::Query<ModelElement> query(model);
  query.narrow(info, query::SearchClassMatchMode::WithSubclasses);
  if (filter.is(tyve::Kind::Struct) ? !filter.isScalar() : !filter.isEmpty())
    orb::zero::raise("InvalidValue", {filter.describe()});
  if (filter.is(tyve::Kind::Struct))
    for (std::size_t i = 0; i < filter.fields().size(); ++i)
      query.where(constraintOf(info, filter.fields()[i], filter.field(i)));
  List found;
  for (ModelElement& element : query.execute())
    found.values.push_back(orb::zero::hb::toHost(std::move(element), {}));
  return found;
}

}  // namespace torvan::datamodel::hb
