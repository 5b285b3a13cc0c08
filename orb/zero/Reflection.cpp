#include <orb/zero/Exception.h>
#include <orb/zero/ModelChanges.h>
#include <orb/zero/Storage.h>
#include <orb/zero/Unit.h>
#include <orb/zero/Value.h>

namespace orb::zero {
namespace {

/// The storage of the outermost savepoint that changed the property; null for none, and for an
/// element of the open transaction, of which not all changes are recorded.
const Storage* outermostOf(const ModelElement::Impl& element, int position) {
  if (element.model().transactions().isNew(element.place())) return nullptr;
  const Storage* outermost = nullptr;
  for (const Storage* storage = element.storage(); storage; storage = storage->previous())
    if (storage->isChanged(position)) outermost = storage;
  return outermost;
}

}  // namespace

ModelListener::~ModelListener() = default;

const meta::PropertyInfo* ModelElement::Impl::getPropertyByIndex(int position) const noexcept {
  const auto& all = getMetaClass().all;
  const auto place = static_cast<std::size_t>(position) - 1;
  return place < all.size() ? all[place] : nullptr;
}

void ModelElement::Impl::raiseNotOwn(const meta::PropertyInfo& property) const {
  raiseNotOwn(property.getQualifiedName());
}
void ModelElement::Impl::raiseNotOwn(std::string_view name) const {
  raise("NoSuchProperty", {std::string(getMetaClass().name), std::string(name)});
}

bool ModelElement::Impl::hasPropertyValue(const meta::PropertyInfo& property) const {
  checkOwn(property);
  return property.services.has(*this);
}

void ModelElement::Impl::setPropertyValue(const meta::PropertyInfo& property, const Value& value,
                                          ProxyTag) {
  checkNoProxy();
  checkOwn(property);
  if (property.flags & meta::ReadOnly)
    raise("CannotSetReadOnlyProperty", {property.getQualifiedName()});
  if (property.services.get(*this, ProxyTag::Keep) == value) return;
  property.services.set(*this, value);
}

Value ModelElement::Impl::getOldValue(const meta::PropertyInfo& property, ProxyTag tag) const {
  checkOwn(property);
  const Storage* const outermost = outermostOf(*this, property.position);
  return outermost ? outermost->getOldValue(property, tag) : getPropertyValue(property, tag);
}

ElementChange ModelElement::Impl::createChanges() const {
  ElementChange change{ModelElement(const_cast<Impl*>(this)), {}};
  if (!storage_) return change;
  for (const meta::PropertyInfo* property : getMetaClass().all) {
    const Storage* const outermost = outermostOf(*this, property->position);
    if (!outermost || outermost->isUnchanged(*property)) continue;
    change.properties.push_back({property, outermost->getOldValue(*property, ProxyTag::Keep),
                                 getPropertyValue(*property, ProxyTag::Keep)});
  }
  return change;
}

void ModelElement::Impl::inverseAdd(const ModelElement& element,
                                    const meta::PropertyInfo& property) {
  checkNoProxy();
  checkOwn(property);
  if (!property.services.add) raise("InvalidValue");
  property.services.add(*this, element);
}

void ModelElement::Impl::inverseRemove(const ModelElement& element,
                                       const meta::PropertyInfo& property) {
  checkNoProxy();
  checkOwn(property);
  if (!element.get()) return;
  Unit unit(*this);
  property.services.release(*this, *element.get());
  unit.commit();
}

bool ModelElement::Impl::inverseContainsProxyTo(const ModelElement& element,
                                                const meta::PropertyInfo& property) const {
  checkOwn(property);
  if (!property.type || !element.get()) return false;
  struct Search final : meta::TargetVisitor {
    void visit(Impl& target) override {
      isFound = isFound || (target.isProxy() && target.getUuid() == wanted);
    }
    uuid wanted;
    bool isFound = false;
  } search;
  search.wanted = element.get()->getUuid();
  property.services.targets(*this, search);
  return search.isFound;
}

}  // namespace orb::zero
