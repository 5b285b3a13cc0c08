#include <orb/zero/ModelImpl.h>
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
  disassociateIncoming(root.index_, slots);
  for (Element* element : doomed.found) element->life_ = Element::Life::Destroyed;
}

/// Clears what refers to dying elements. Goes from `start` outwards, since most references are
/// local, and stops when all `slots` that refer to them have been seen.
void Model::Impl::disassociateIncoming(std::uint32_t start, std::size_t slots) {
  Targets targets;
  const auto clearAt = [&](std::size_t place) {
    Element* const element = elements_[place];
    if (!element) return;
    for (const meta::PropertyInfo* property : element->getMetaClass().all) {
      if (property->isOwning) continue;
      targets.found.clear();
      property->services.targets(*element, targets);
      for (Element* target : targets.found) {
        if (target->life_ != Element::Life::Dying) continue;
        --slots;
        if (element->isAlive()) property->services.release(*element, *target);
      }
    }
  };
  const std::size_t size = elements_.size();
  for (std::size_t distance = 0; slots > 0 && distance < size; ++distance) {
    if (start + distance < size) clearAt(start + distance);
    if (slots > 0 && distance < start) clearAt(start - distance - 1);
  }
}

}  // namespace orb::zero
