#pragma once

#include <algorithm>

#include <orb/zero/ModelImpl.h>
#include <orb/zero/UndoRecord.h>

namespace orb::zero {

/// The creation or the destruction of an element. A destroyed element stays in its place as long as
/// a record may revive it, and its slots keep their targets, so that reviving it is one step. What
/// goes with it keeps its owner; what it was given before its creation has none without it.
class Existence final : public UndoRecord {
 public:
  enum class Change : bool { Creation, Destruction };

  Existence(ModelElement::Impl& element, Change change) noexcept
      : UndoRecord(element), change_(change) {}

  void flip() noexcept override {
    using Life = ModelElement::Impl::Life;
    Model::Impl& model = element().model();
    const bool revives = element().standing_.life != Life::Alive;
    element().standing_.life = revives ? Life::Alive : Life::Destroyed;
    if (!element().isProxy()) revives ? ++model.alive_ : --model.alive_;
    if (revives) {
      model.first_ = std::min(model.first_, element().place());
      if (element().isProxy()) model.proxies_.find(element().getUuid())->second.latest = &element();
    }
    isMade_ = !isMade_;
    if (isDestruction()) return;
    for (const meta::PropertyInfo* property : element().getMetaClass().owning)
      property->services.link(element(), revives);
  }
  void settle() noexcept override {
    if (isMade_ == isDestruction()) element().model().end(element());
  }
  bool isDestruction() const noexcept override { return change_ == Change::Destruction; }

 private:
  std::size_t size() const noexcept override { return sizeof *this; }

  Change change_;
  bool isMade_ = true;
};

}  // namespace orb::zero
