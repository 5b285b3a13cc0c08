#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include <boost/container/small_vector.hpp>

#include <orb/zero/Existence.h>
#include <orb/zero/Targets.h>
#include <orb/zero/Transaction.h>

namespace orb::zero {

void ModelElement::Impl::destroy() {
  Transaction unit(getModel());
  model_->destroy(*this);
  unit.commit();
}

void ModelElement::Impl::leaveContainer() {
  if (!container_) return;
  containment().services.release(*container_, *this);
}

namespace {

/// What ends with its owner. Proxies stay: what they stand for may be somewhere else.
struct Doomed final : Targets {
  void visit(ModelElement::Impl& target) override {
    target.isProxy() ? proxies.visit(target) : Targets::visit(target);
  }
  Targets proxies;
};

}  // namespace

void Model::Impl::destroy(Element& root, Element* replacement) {
  if (replacement && root.container_)
    root.containment().services.replace(*root.container_, root, *replacement);
  else
    root.leaveContainer();
  lose();
  Doomed doomed;
  doomed.found.push_back(&root);
  for (std::size_t i = 0; i < doomed.found.size(); ++i) {  // grows while it runs
    Element& element = *doomed.found[i];
    visitOwned(element, doomed);
    for (Element* proxy : doomed.proxies.found) proxy->leaveContainer();
    doomed.proxies.found.clear();
    transactions_.reserve();
    auto record =
        std::unique_ptr<UndoRecord>(new (*this) Existence(element, Existence::Change::Destruction));
    transactions_.log(std::move(record));
    element.standing_.life = Element::Life::Dying;
    if (!element.isProxy()) --alive_;
  }
  disassociateIncoming({doomed.found.data(), doomed.found.size()}, replacement);
  for (Element* element : doomed.found) element->standing_.life = Element::Life::Destroyed;
}

void Model::Impl::disassociate(Element& target) {
  Element* const only = &target;
  target.standing_.life = Element::Life::Dying;
  try {
    disassociateIncoming(std::span(&only, 1), nullptr);
  } catch (...) {
    target.standing_.life = Element::Life::Alive;
    throw;
  }
  target.standing_.life = Element::Life::Alive;
  for (const meta::PropertyInfo* property : target.getMetaClass().referring)
    property->services.release(target, target);  // passed over as dying
}

/// Takes dying elements out of what refers to them; a replacement comes in the place of the first.
void Model::Impl::disassociateIncoming(std::span<Element* const> targets, Element* replacement) {
  using Link = std::pair<std::uint32_t, Element*>;  // from the place of one that may refer
  boost::container::small_vector<Link, 8> links;
  const auto findAll = [&] {
    links.clear();
    for (Element* target : targets) {
      if (target->isUntracked() && target->slotCount() > 0) return false;
      referrers_.visit(*target, [&](std::uint32_t place) { links.emplace_back(place, target); });
    }
    return true;
  };
  if (!findAll() && (referrers_.rebuild(), !findAll()) && (referrers_.rebuildAll(), !findAll())) {
    links.clear();  // for lack of memory
    Targets referred;
    for (std::uint32_t place = 0; place < births(); ++place) {
      if (!elements_[place]) continue;
      referred.found.clear();
      for (const meta::PropertyInfo* property : elements_[place]->getMetaClass().referring)
        property->services.targets(*elements_[place], referred);
      for (Element* target : referred.found)
        if (target->standing_.life == Element::Life::Dying) links.emplace_back(place, target);
    }
  }
  std::sort(links.begin(), links.end());
  links.erase(std::unique(links.begin(), links.end()), links.end());

  for (const auto& [place, target] : links) {
    Element* const element = elements_[place];
    if (!element || !element->isAlive()) continue;  // the others keep theirs for a revival
    for (const meta::PropertyInfo* property : element->getMetaClass().referring) {
      if (replacement && target == targets.front())
        property->services.replace(*element, *target, *replacement);
      else
        property->services.release(*element, *target);
    }
  }
}

}  // namespace orb::zero
