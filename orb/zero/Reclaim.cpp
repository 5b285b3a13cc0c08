#include <algorithm>

#include <orb/zero/Exception.h>
#include <orb/zero/ModelImpl.h>
#include <orb/zero/Targets.h>

namespace orb::zero {

bool ModelElement::Impl::isHeldOnlyBySlots(std::uint32_t slots) const noexcept {
  if (outside_ != 0 || slots_ != slots) return false;
  struct Children final : meta::TargetVisitor {
    void visit(ModelElement::Impl& child) override { held = held || !child.isHeldOnlyBySlots(1); }
    bool held = false;
  } children;
  visitOwned(*this, children);
  return !children.held;
}

namespace {

/// Whether a rollback would end the element and all that it owns anyway.
bool isYoung(ModelElement::Impl& element, std::uint32_t births) {
  if (births == 0) return true;
  if (element.isOlderThan(births)) return false;
  Targets children;
  visitOwned(element, children);
  return std::all_of(children.found.begin(), children.found.end(),
                     [=](auto* child) { return isYoung(*child, births); });
}

/// The targets that are alive; a slot may be the last to hold what a rollback has ended.
struct Living final : Targets {
  void visit(ModelElement::Impl& target) override {
    if (target.isAlive()) Targets::visit(target);
  }
  void collect(const ModelElement::Impl& element, meta::ClassInfo::Properties links) {
    found.clear();
    for (const meta::PropertyInfo* link : links) link->services.targets(element, *this);
  }
};

}  // namespace

/// Collects first, then destroys: what the doomed let go of may be doomed in turn.
std::size_t Model::Impl::reclaim() {
  if (transactions_.isFrozen()) raise("CannotModifyFrozenModel");
  const std::uint32_t first = transactions_.births();
  std::vector<Element*> doomed;
  const auto consider = [&](Element* element) {
    if (!element || !element->isAlive() || element->isProxy() || element->container_) return;
    if (!element->isReclaimable() || !isYoung(*element, first)) return;
    element->standing_.life = Element::Life::Dying;
    doomed.push_back(element);
  };
  for (std::uint32_t i = first; i < births(); ++i) consider(elements_[i]);

  constexpr std::uint32_t few = 2;  // slots, which are perhaps those of one other element
  Living owned, referred, holders;
  for (std::size_t i = 0; i < doomed.size(); ++i) {
    Element& element = *doomed[i];
    const meta::ClassInfo& type = element.getMetaClass();
    owned.collect(element, type.owning);
    referred.collect(element, type.referring);
    for (const meta::PropertyInfo* link : type.links) link->services.clear(element);
    for (Element* child : owned.found) child->standing_.life = Element::Life::Dying;
    doomed.insert(doomed.end(), owned.found.begin(), owned.found.end());
    for (Element* target : referred.found) {
      consider(target);
      if (!target->isAlive() || target->slots_ > few) continue;
      // Of two that hold each other, as a type and its top, either may be the one to ask.
      holders.collect(*target, target->getMetaClass().referring);
      for (Element* holder : holders.found) consider(holder);
    }
  }

  std::size_t reclaimed = 0;
  for (Element* element : doomed) {
    if (!element->isProxy()) ++reclaimed;
    remove(*element);
    element->slots_ == 0 ? dispose(*element) : retire(*element);  // held by one that has to stay
  }
  alive_ -= reclaimed;
  if (2 * gaps_ > elements_.size()) compact();
  return reclaimed;
}

}  // namespace orb::zero
