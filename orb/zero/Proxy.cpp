#include <orb/zero/Exception.h>
#include <orb/zero/ModelImpl.h>
#include <orb/zero/Targets.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/Value.h>

#include <algorithm>
#include <utility>

namespace orb::zero {

ModelElement Model::Impl::proxy(const ProxyId& id, const Element* original) {
  const auto found = proxies_.find(id.id);
  if (Element* const known = found != proxies_.end() ? found->second.latest : nullptr;
      known && known->isAlive()) {
    if (&known->getMetaClass() != id.type) raise("InvalidValue");
    if (original && !known->container_) copyKey(*original, *known);
    return ModelElement(known);
  }
  Staged staged = stage(*id.type);
  if (original) copyKey(*original, *staged);
  staged->standing_.isProxy = true;
  Transaction unit(Model(this));
  ModelElement made = adopt(std::move(staged), id.id);
  Proxies& proxies = proxies_[id.id];
  proxies.latest = made.get();
  ++proxies.count;
  unit.commit();
  return made;
}

/// The owner finds the copy under the key of the original.
void Model::Impl::copyKey(const Element& original, Element& copy) {
  if (!original.container_ || original.containment().key.empty()) return;
  const meta::PropertyInfo& key = *original.getPropertyByName(original.containment().key);
  const Value value = key.services.get(original, ProxyTag::Keep);
  const bool isProxy = std::exchange(copy.standing_.isProxy, false);  // for once it may be changed
  try {
    key.services.set(copy, value);
  } catch (...) {
    copy.standing_.isProxy = isProxy;
    throw;
  }
  copy.standing_.isProxy = isProxy;
}

ModelElement ModelElement::Impl::resolved() const {
  ModelElement self(const_cast<Impl*>(this));
  if (!standing_.isProxy) return self;
  ModelElement found(model_->find(uuid_));
  return found && found.get()->getMetaClass().isKindOf(getMetaClass()) ? found : self;
}

bool ModelElement::Impl::resolve() {
  const ModelElement original = resolved();
  if (!standing_.isProxy || original.get() == this) return false;
  Transaction unit(getModel());
  model_->destroy(*this, original.get());
  unit.commit();
  return true;
}

ModelElement ModelElement::Impl::convertToProxy() {
  if (standing_.isProxy) return ModelElement(this);
  const Model model = getModel();
  const ProxyId id = getProxyId();
  Transaction unit(model);
  doDestroy(true, true);
  ModelElement proxy = model.createProxy(*id.type, id.id);
  unit.commit();
  return proxy;
}

void ModelElement::Impl::doDestroy(bool owned, bool leavesProxy) {
  Transaction unit(getModel());
  if (!owned) {
    Targets children;
    visitOwned(*this, children);
    for (Impl* child : children.found) child->leaveContainer();
  }
  const bool isReplaced = leavesProxy && !standing_.isProxy;
  const ModelElement proxy = isReplaced ? model_->proxy(getProxyId(), this) : ModelElement();
  model_->destroy(*this, proxy.get());
  unit.commit();
}

void ModelElement::Impl::convertReferencesToProxies(bool owned,
                                                    const std::optional<ProxyId>& only) {
  checkNoProxy();
  Targets converted;
  converted.found.push_back(this);
  for (std::size_t i = 0; owned && i < converted.found.size(); ++i)  // grows while it runs
    visitOwned(*converted.found[i], converted);
  auto inside = converted.found;
  std::sort(inside.begin(), inside.end());

  Transaction unit(getModel());
  Targets referred;
  for (Impl* element : converted.found) {
    for (const meta::PropertyInfo* property : element->getMetaClass().referring) {
      referred.collect(*element, *property);
      for (Impl* target : referred.found) {
        if (!target->isAlive() || target->isProxy() || (only && only->id != target->getUuid()))
          continue;
        if (std::binary_search(inside.begin(), inside.end(), target)) continue;
        property->services.replace(*element, *target, *model_->proxy(target->getProxyId()).get());
      }
    }
  }
  unit.commit();
}

void ModelElement::Impl::disassociateIncoming() {
  Transaction unit(getModel());
  leaveContainer();
  model_->disassociate(*this);
  unit.commit();
}

void ModelElement::Impl::basicDisassociateAll() {
  checkNoProxy();
  Transaction unit(getModel());
  for (const meta::PropertyInfo* property : getMetaClass().referring)
    property->services.set(*this, Value());
  unit.commit();
}

}  // namespace orb::zero
