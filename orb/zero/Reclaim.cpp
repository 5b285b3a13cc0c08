#include <orb/zero/ModelImpl.h>
#include <orb/zero/Targets.h>

namespace orb::zero {

bool ModelElement::Impl::isHeldOnlyBySlots(std::uint32_t slots) const noexcept {
  if (outside_ != 0 || slots_ != slots) return false;
  struct Children final : meta::TargetVisitor {
    void visit(ModelElement::Impl& child) override { held = held || !child.isHeldOnlyBySlots(1); }
    bool held = false;
  } children;
  auto& self = const_cast<Impl&>(*this);  // the visitor is shown mutable elements
  for (const meta::PropertyInfo* property : getMetaClass().all)
    if (property->isOwning) property->services.targets(self, children);
  return !children.held;
}

/// Collects first, then destroys: what the doomed let go of may be doomed in turn.
std::size_t Model::Impl::reclaim() {
  const std::uint32_t first = transactions_.outermostBirth();
  std::vector<Element*> doomed;
  const auto consider = [&](Element* element) {
    if (!element || !element->isAlive() || element->container_ || element->index_ < first) return;
    if (!element->isReclaimable()) return;
    element->life_ = Element::Life::Dying;
    doomed.push_back(element);
  };
  for (std::uint32_t i = first; i < births(); ++i) consider(elements_[i]);

  Targets owned, referred;
  for (std::size_t i = 0; i < doomed.size(); ++i) {
    Element& element = *doomed[i];
    owned.found.clear();
    referred.found.clear();
    for (const meta::PropertyInfo* property : element.getMetaClass().all) {
      property->services.targets(element, property->isOwning ? owned : referred);
      property->services.clear(element);
    }
    for (Element* child : owned.found) child->life_ = Element::Life::Dying;
    doomed.insert(doomed.end(), owned.found.begin(), owned.found.end());
    for (Element* target : referred.found) consider(target);
  }

  for (Element* element : doomed) {
    remove(*element);
    delete element;
  }
  alive_ -= doomed.size();
  if (2 * gaps_ > elements_.size()) compact();
  return doomed.size();
}

}  // namespace orb::zero
