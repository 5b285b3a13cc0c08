#pragma once

#include <cstdint>

#include <orb/zero/Model.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/meta/ClassInfo.h>

namespace orb::zero {

/// What every element is: identity, class, model, owner and the counts of what refers to it. A
/// model class derives from it (through `ImplOf`) and adds its properties.
class ORB_ZERO_API ModelElement::Impl {
 public:
  Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  virtual ~Impl();

  virtual const meta::ClassInfo& getMetaClass() const = 0;
  const uuid& getUuid() const noexcept { return uuid_; }
  /// A counted handle to the model that owns this element.
  Model getModel() const noexcept { return Model(model_); }
  /// The element that owns this one; empty for a top-level element.
  ModelElement getContainer() const noexcept { return ModelElement(container_); }
  bool isAlive() const noexcept { return life_ == Life::Alive; }

  /// Ends the element and all that it owns. What refers to them is cleared (a single property
  /// becomes unset, a sequence entry is removed); what they refer to stays. One undoable unit.
  void destroy();

  /// Makes the element of the builder and puts it into the owned collection, as one unit: a refused
  /// insertion leaves no element.
  ModelElement createInto(const meta::PropertyInfo& property, Builder& builder, const uuid& id);

  /// Ends the memory of an element that is no part of its model's order.
  struct Disposer {
    void operator()(Impl* element) const noexcept;
  };

  /// True when the model may free this element in `reclaim()`, because nothing but itself holds
  /// it; asked of live top-level elements.
  virtual bool isReclaimable() const noexcept { return false; }

  void addRef() noexcept;
  void removeRef() noexcept {
    if (--outside_ == 0) lastOutside();
  }
  void addSlot() noexcept { ++slots_; }
  void removeSlot() noexcept {
    if (--slots_ == 0 && life_ == Life::Ended) lastSlot();
  }
  std::uint32_t outsideCount() const noexcept { return outside_; }
  std::uint32_t slotCount() const noexcept { return slots_; }

  // What the properties and collections of an element are built on.

  /// Whether the single primitive property at this position was ever given.
  bool isGiven(int position) const noexcept { return (given_ >> position) & 1; }
  void setGiven(int position, bool given) noexcept {
    given_ = given ? given_ | (1u << position) : given_ & ~(1u << position);
  }
  /// To be called before a single property changes: keeps its value for a rollback.
  void notifyModifying(int position) {
    if (isRecorded()) recordValue(position);
  }
  /// Whether a change of this element can be rolled back by itself: a transaction is open, and the
  /// element is older than it (the undo of a younger one is its end).
  bool isRecorded() const noexcept;
  /// Whether the element is among the first `births` of its model's creation order.
  bool isOlderThan(std::uint32_t births) const noexcept { return index_ < births; }
  /// Raises "CannotCreateCrossModelAssociation" for an element of another model.
  void checkCompatibleModel(const ModelElement& target) const;
  /// The checks of an insertion in their order: exists, class, model.
  void checkInsertion(const ModelElement& element, const meta::ClassInfo& expected) const;
  /// Links to the owner, or to none. `position` is that of the owning property.
  void setContainer(Impl* owner, int position) noexcept {
    container_ = owner;
    containment_ = static_cast<std::uint8_t>(position);
  }
  Impl* container() const noexcept { return container_; }
  bool isContainedIn(const Impl& owner, int position) const noexcept {
    return container_ == &owner && containment_ == position;
  }
  /// Takes the element out of its owner's collection; can be undone.
  void leaveContainer();
  /// Place in the owned sequence that holds this element.
  std::uint32_t order() const noexcept { return order_; }
  void setOrder(std::uint32_t order) noexcept { order_ = order; }
  Model::Impl& model() const noexcept { return *model_; }

  /// True when exactly so many slots refer to this element, no outside handle does, and what it
  /// owns is referred to by it alone.
  bool isHeldOnlyBySlots(std::uint32_t slots) const noexcept;

 private:
  friend class Model;
  friend class ModelElement;
  friend class ModelElement::Builder;
  friend class Storage;
  friend class Destruction;

  // Staged: in a builder. Dying: being destroyed. Destroyed: a rollback may revive it. Ended: only
  // counts keep its memory.
  enum class Life : std::uint8_t { Staged, Alive, Dying, Destroyed, Ended };

  void recordValue(int position);
  void lastOutside() noexcept;
  void lastSlot() noexcept;

  std::uint32_t outside_ = 0;
  std::uint32_t slots_ = 0;
  Model::Impl* model_ = nullptr;
  Impl* container_ = nullptr;
  Storage* storage_ = nullptr;  // the newest undo record
  uuid uuid_{};
  std::uint32_t index_ = UINT32_MAX;  // in the model's creation order
  std::uint32_t order_ = 0;
  std::uint32_t given_ = 0;
  std::uint8_t containment_ = 0;
  Life life_ = Life::Staged;
};

inline ModelElement::ModelElement(Impl* element) noexcept
    : word_(reinterpret_cast<std::uintptr_t>(element)) {
  if (element) element->addRef();
}
inline ModelElement::~ModelElement() {
  if (Impl* const element = get()) isSlot() ? element->removeSlot() : element->removeRef();
}
inline ModelElement::operator bool() const noexcept { return get() && get()->isAlive(); }
inline ModelElement::Impl* ModelElement::operator->() const {
  if (!*this) [[unlikely]]
    raiseEmpty(metaClass());
  return get();
}
inline void ModelElement::addRef() const noexcept {
  if (get()) get()->addRef();
}
inline void ModelElement::removeRef() const noexcept {
  if (get()) get()->removeRef();
}
inline ModelElement& ModelElement::assign(Impl* target) noexcept {
  const std::uintptr_t tag = word_ & slotTag;
  Impl* const before = get();
  if (target) tag ? target->addSlot() : target->addRef();
  word_ = reinterpret_cast<std::uintptr_t>(target) | tag;
  if (before) tag ? before->removeSlot() : before->removeRef();
  return *this;
}

}  // namespace orb::zero

#include <orb/zero/ModelImpl.h>  // completes the inline functions
