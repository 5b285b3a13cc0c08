#include <algorithm>

#include <orb/zero/ModelImpl.h>
#include <orb/zero/ReferrerIndex.h>
#include <orb/zero/Targets.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/UndoRecord.h>

namespace orb::zero {

/// A destroyed element stays in its place until the outermost commit, and its slots keep their
/// targets, so that reviving it is one step.
class Destruction final : public UndoRecord {
 public:
  explicit Destruction(ModelElement::Impl& element) noexcept : UndoRecord(element) {
    element.life_ = ModelElement::Impl::Life::Dying;
    --element.model().alive_;
  }
  void undo() noexcept override {
    element().life_ = ModelElement::Impl::Life::Alive;
    ++element().model().alive_;
  }
  void settle() noexcept override { element().model().end(element()); }
};

void ModelElement::Impl::destroy() {
  Transaction unit(getModel());
  model_->destroy(*this);
  unit.commit();
}

void ModelElement::Impl::leaveContainer() {
  if (!container_) return;
  const auto& all = container_->getMetaClass().all;
  all[containment_ - 1u]->services.release(*container_, *this);
}

void Model::Impl::destroy(Element& root) {
  std::size_t slots = root.slots_;
  if (root.container_) {
    root.leaveContainer();
    --slots;  // its owner's
  }
  Targets doomed;
  doomed.found.push_back(&root);
  for (std::size_t i = 0; i < doomed.found.size(); ++i) {  // grows while it runs
    Element& owner = *doomed.found[i];
    const std::size_t before = doomed.found.size();
    for (const meta::PropertyInfo* property : owner.getMetaClass().all)
      if (property->isOwning) property->services.targets(owner, doomed);
    for (std::size_t child = before; child < doomed.found.size(); ++child)
      slots += doomed.found[child]->slots_ - 1;  // one is the owner's
  }
  ++losses_;
  for (Element* element : doomed.found) {
    transactions_.reserve();
    transactions_.log(std::make_unique<Destruction>(*element));
  }
  if (slots > 0) disassociateIncoming(doomed.found, slots);
  for (Element* element : doomed.found) element->life_ = Element::Life::Destroyed;
}

/// Clears what refers to the doomed. Most references are local, so the search begins around the
/// place of the first of them; for the others there is an index, which may not know them all, so it
/// is the number of slots that tells when all have been seen.
void Model::Impl::disassociateIncoming(const std::vector<Element*>& doomed, std::size_t slots) {
  constexpr std::uint32_t vicinity = 32;
  const std::uint32_t middle = doomed.front()->index_;
  const std::uint32_t first = middle < vicinity ? 0 : middle - vicinity;
  const std::uint32_t last = std::min(births(), middle + vicinity);
  for (std::uint32_t place = first; slots > 0 && place < last; ++place) slots -= clearDying(place);
  if (slots == 0) return;

  if (!referrers_) referrers_ = std::make_unique<ReferrerIndex>();
  std::vector<std::uint32_t> places;
  for (const Element* target : doomed) referrers_->find(*target, elements_, places);
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  for (const std::uint32_t place : places)
    if (slots > 0 && (place < first || place >= last)) slots -= clearDying(place);
  if (slots == 0) return;

  for (std::uint32_t place = 0; place < births(); ++place) clearDying(place);
  referrers_.reset();
}

/// Clears what one element refers to. Returns the number of references, also of one that is not
/// alive and keeps them for its revival.
std::size_t Model::Impl::clearDying(std::uint32_t place) {
  Element* const element = elements_[place];
  if (!element) return 0;
  Targets targets;
  std::size_t seen = 0;
  for (const meta::PropertyInfo* property : element->getMetaClass().all) {
    if (property->isOwning) continue;
    targets.found.clear();
    property->services.targets(*element, targets);
    for (Element* target : targets.found) {
      if (target->life_ != Element::Life::Dying) continue;
      ++seen;
      if (element->isAlive()) property->services.release(*element, *target);
    }
  }
  return seen;
}

}  // namespace orb::zero
