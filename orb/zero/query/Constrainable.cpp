#include <orb/zero/query/Constrainable.h>

namespace orb::zero::query {
namespace {

/// Looks for one element among those that a property names.
struct Search final : meta::TargetVisitor {
  explicit Search(const meta::Element* element) : wanted(element) {}
  void visit(meta::Element& target) override { found = found || &target == wanted; }

  const meta::Element* wanted;
  bool found = false;
};

}  // namespace

Constrainable::Constrainable(const meta::PropertyInfo& property, bool isSingle,
                             const std::type_info* primitive)
    : property_(&property) {
  const bool isOfType = primitive ? property.primitive && *property.primitive == *primitive
                                  : property.primitive == nullptr;
  if (!isOfType || isSingle != (property.kind == meta::ValueKind::Single))
    raise("CannotCastIncompatibleTypes", {property.getQualifiedName()});
}

Constraint Constrainable::isPresent() const {
  return where([has = property().services.has](const meta::Element& element, const void*) {
    return has(element);
  });
}

Constraint Reference::operator==(const ModelElement& target) const {
  return where([target](const meta::Element&, const void* slot) {
    const auto& reference = *static_cast<const ModelElement*>(slot);
    return target ? reference == target : !reference;
  });
}

Constraint ElementCollection::contains(const ModelElement& wanted) const {
  return where([&property = property(), wanted](const meta::Element& element, const void*) {
    if (!wanted) return false;
    if (property.isOwning) return wanted.get()->isContainedIn(element, property.position);
    Search search(wanted.get());
    property.services.targets(element, search);
    return search.found;
  });
}

}  // namespace orb::zero::query
