#include <orb/zero/Exception.h>
#include <orb/zero/ModelImpl.h>
#include <orb/zero/Targets.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/Value.h>

#include <algorithm>

namespace orb::zero {

Model::Impl::Element& Model::Impl::proxy(const ProxyId& id, const Element* original) {
  const auto [first, last] = proxies_.equal_range(id.id);
  const auto known =
      std::find_if(first, last, [](const auto& each) { return each.second->isAlive(); });
  if (known != last) {
    if (&known->second->getMetaClass() != id.type) raise("InvalidValue");
    return *known->second;
  }
  Staged staged = stage(*id.type);
  if (original && original->container_) copyKey(*original, *staged);
  staged->isProxy_ = true;
  Transaction unit(Model(this));
  Element& made = adopt(std::move(staged), id.id);
  proxies_.emplace(id.id, &made);
  unit.commit();
  return made;
}

/// The owner finds the copy under the key of the original.
void Model::Impl::copyKey(const Element& original, Element& copy) {
  const std::string_view name = original.containment().key;
  if (name.empty()) return;
  const meta::PropertyInfo& key = *original.getPropertyByName(name);
  key.services.set(copy, key.services.get(original, ProxyTag::Keep));
}

ModelElement ModelElement::Impl::resolved() const {
  ModelElement self(const_cast<Impl*>(this));
  if (!isProxy_) return self;
  ModelElement found(model_->find(uuid_));
  return found && found.get()->getMetaClass().isKindOf(getMetaClass()) ? found : self;
}

bool ModelElement::Impl::resolve() {
  const ModelElement original = resolved();
  if (!isProxy_ || original.get() == this) return false;
  Transaction unit(getModel());
  model_->destroy(*this, original.get());
  unit.commit();
  return true;
}

ModelElement ModelElement::Impl::convertToProxy() {
  if (isProxy_) return ModelElement(this);
  const Model model = getModel();
  const ProxyId id = getProxyId();
  Transaction unit(model);
  doDestroy(true, true);
  unit.commit();
  return model.createProxy(*id.type, id.id);
}

void ModelElement::Impl::doDestroy(bool owned, bool leavesProxy) {
  Transaction unit(getModel());
  if (!owned) {
    Targets children;
    for (const meta::PropertyInfo* property : getMetaClass().all)
      if (property->isOwning) property->services.targets(*this, children);
    for (Impl* child : children.found) child->leaveContainer();
  }
  Impl* const proxy = leavesProxy && !isProxy_ ? &model_->proxy(getProxyId(), this) : nullptr;
  model_->destroy(*this, proxy);
  unit.commit();
}

void ModelElement::Impl::convertReferencesToProxies(bool owned,
                                                    const std::optional<ProxyId>& only) {
  checkNoProxy();
  Targets converted;
  converted.found.push_back(this);
  for (std::size_t i = 0; owned && i < converted.found.size(); ++i)  // grows while it runs
    for (const meta::PropertyInfo* property : converted.found[i]->getMetaClass().all)
      if (property->isOwning) property->services.targets(*converted.found[i], converted);
  std::vector<Impl*> inside = converted.found;
  std::sort(inside.begin(), inside.end());

  Transaction unit(getModel());
  Targets referred;
  for (Impl* element : converted.found) {
    for (const meta::PropertyInfo* property : element->getMetaClass().all) {
      if (property->isOwning || !property->type) continue;
      referred.found.clear();
      property->services.targets(*element, referred);
      for (Impl* target : referred.found) {
        if (target->isProxy() || (only && only->id != target->getUuid())) continue;
        if (std::binary_search(inside.begin(), inside.end(), target)) continue;
        property->services.replace(*element, *target, model_->proxy(target->getProxyId()));
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
  for (const meta::PropertyInfo* property : getMetaClass().all)
    if (!property->isOwning && property->type) property->services.set(*this, Value());
  unit.commit();
}

}  // namespace orb::zero
