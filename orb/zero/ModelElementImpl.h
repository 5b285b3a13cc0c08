#pragma once

#include <bit>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include <orb/zero/Model.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/meta/ClassInfo.h>

namespace orb::zero {

class Value;
struct ElementChange;

/// Whether a value that names a proxy is given as the element that the proxy stands for, when the
/// model has that.
enum class ProxyTag { Resolve, Keep };

/// What a proxy stands for.
struct ProxyId {
  uuid id;
  const meta::ClassInfo* type;
};

/// What every element is: identity, class, model, owner and the counts of what refers to it. A
/// model class derives from it (through `ImplOf`) and adds its properties.
class ORB_ZERO_API ModelElement::Impl {
 public:
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;
  virtual ~Impl();

  const meta::ClassInfo& getMetaClass() const noexcept {
    return meta::classAt(standing_.classNumber);
  }
  /// That of its class, see `meta::classAt`.
  std::uint32_t classNumber() const noexcept { return standing_.classNumber; }
  /// Has the memory brought near, before the class and the first properties are looked at. Always
  /// inside of its callers, as the compiler leaves out calls of what has no effect.
  [[gnu::always_inline]] void prefetch() const noexcept { __builtin_prefetch(&standing_); }
  /// Whether it is of the class, which has this number, or of one derived from it.
  bool isOf(std::uint32_t number, const meta::ClassInfo& type) const noexcept {
    return standing_.classNumber == number || getMetaClass().isKindOf(type);
  }
  const uuid& getUuid() const noexcept { return uuid_; }
  /// A counted handle to the model that owns this element.
  Model getModel() const noexcept { return Model(model_); }
  /// The element that owns this one; empty for a top-level element.
  ModelElement getContainer() const noexcept { return ModelElement(container_); }
  bool isAlive() const noexcept { return standing_.life == Life::Alive; }
  /// Whether it is a live element of its model, and no proxy.
  bool isMember() const noexcept { return isAlive() && !standing_.isProxy; }
  /// The same of an element of the class that has this number itself.
  bool isMemberOfExactly(std::uint32_t number) const noexcept {
    constexpr auto member = std::bit_cast<std::uint32_t>(Standing{0, Life::Alive, false});
    return std::bit_cast<std::uint32_t>(standing_) == (member | number);
  }

  // Reflection: properties by their descriptors. A property that the class lacks raises
  // "NoSuchProperty" with the class and the property.

  /// The property at this position, or of this name; null when there is none.
  const meta::PropertyInfo* getPropertyByIndex(int position) const noexcept;
  const meta::PropertyInfo* getPropertyByName(std::string_view name) const noexcept {
    return getMetaClass().find(name);
  }
  /// A single primitive value that is not set is an empty `Value`; references are handles, empty
  /// ones included; a collection is a sequence, in its order.
  Value getPropertyValue(const meta::PropertyInfo& property,
                         ProxyTag tag = ProxyTag::Resolve) const;
  Value getPropertyValue(std::string_view name, ProxyTag tag = ProxyTag::Resolve) const;
  bool hasPropertyValue(const meta::PropertyInfo& property) const;
  /// Does what the setter does; an empty `Value` unsets, a sequence replaces the content of a
  /// collection as one unit. Raises, in this order, "CannotModifyProxy",
  /// "CannotSetReadOnlyProperty" with the qualified name, "CannotCastIncompatibleTypes" with the
  /// type's name, and what the setter or the collection raises. With either tag, a proxy that
  /// stands there gives way to the element.
  void setPropertyValue(const meta::PropertyInfo& property, const Value& value,
                        ProxyTag tag = ProxyTag::Resolve);

  // The open transaction.

  /// What it changed of this element since the innermost savepoint that did; null for nothing, and
  /// for an element that is younger than the savepoint.
  Storage* storage() const noexcept { return storage_; }
  /// The value before the outermost transaction; the present one of an element that is younger.
  Value getOldValue(const meta::PropertyInfo& property, ProxyTag tag = ProxyTag::Resolve) const;
  /// What the transaction has changed so far, as listeners would be told.
  ElementChange createChanges() const;
  /// An empty storage of the class, which takes single values from `copyValue` and gives them back
  /// by `copyStateFromStorage`, which leaves it the present ones. Lies in the memory of the model,
  /// and has to end before it. Raises nothing but for lack of memory.
  std::unique_ptr<Storage> createStorage() const;
  void copyValue(Storage& storage, int position) const;
  void copyStateFromStorage(Storage& storage) noexcept;

  // Proxies: stand-ins for elements that are not there, with their UUID and class. A proxy is made
  // by `createProxy`; it can stand wherever its element can, and all else that changes it raises
  // "CannotModifyProxy". It is no element of the model to `find`, `elements` and queries.

  bool isProxy() const noexcept { return standing_.isProxy; }
  ProxyId getProxyId() const noexcept { return {uuid_, &getMetaClass()}; }
  /// The element that a proxy stands for, if the model has it, or else the proxy; itself for an
  /// element that is none.
  ModelElement resolved() const;
  /// Puts the element that a proxy stands for in its place everywhere, and ends the proxy. Returns
  /// false, and changes nothing, when the model does not have the element.
  bool resolve();
  /// Puts a proxy in the place of this element everywhere, and destroys the element with all that
  /// it owns. Returns the proxy.
  ModelElement convertToProxy();
  /// Has this element, and with `owned` all that it owns, refer to proxies instead of elements
  /// outside of what is converted: to all, or only to the one named. What it owns stays.
  void convertReferencesToProxies(bool owned, const std::optional<ProxyId>& only);
  /// Raises "CannotModifyProxy" for a proxy.
  void checkNoProxy() const {
    if (standing_.isProxy) [[unlikely]]
      raiseProxy();
  }

  // The far end of a link.

  /// Puts the element into the collection, takes it out, tells whether there is a proxy for it.
  void inverseAdd(const ModelElement& element, const meta::PropertyInfo& property);
  void inverseRemove(const ModelElement& element, const meta::PropertyInfo& property);
  bool inverseContainsProxyTo(const ModelElement& element,
                              const meta::PropertyInfo& property) const;
  /// Clears what refers to this element.
  void disassociateIncoming();
  /// Clears what this element refers to; what it owns stays.
  void basicDisassociateAll();

  /// Ends the element and all that it owns. What refers to them is cleared (a single property
  /// becomes unset, a sequence entry is removed); what they refer to stays. One undoable unit.
  void destroy();

  /// The same with a choice: what it owns goes with it, or stays as top-level elements; and what
  /// refers to it is cleared, or refers to a proxy from now on.
  void doDestroy(bool owned, bool leavesProxy);

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
  void removeRef() noexcept;
  void addSlot() noexcept { ++slots_; }
  void removeSlot() noexcept {
    if (--slots_ == 0 && standing_.life == Life::Ended) lastSlot();
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
  void notifyModifying(int position);
  /// The storage of the innermost savepoint, made when it is asked for first.
  Storage& storageOfSavepoint();
  /// Whether a change of this element can be rolled back by itself: a transaction is open, and the
  /// element is older than it (the undo of a younger one is its end).
  bool isRecorded() const noexcept;
  /// Place in the model's creation order.
  std::uint32_t place() const noexcept { return index_; }
  /// Whether the element is among the first `births` of its model's creation order.
  bool isOlderThan(std::uint32_t births) const noexcept { return index_ < births; }
  /// Raises "CannotCreateCrossModelAssociation" for an element of another model.
  void checkCompatibleModel(const Impl* target) const {
    if (target && target->model_ != model_) [[unlikely]]
      raiseCrossModel();
  }
  /// The checks of the insertion of an E in their order: exists, class, model.
  template <class E>
  void checkInsertion(const ModelElement& element) const {
    if (!element || !element.get()->isOf(E::classNumber, E::metaClass()) ||
        element.get()->model_ != model_) [[unlikely]]
      refuseInsertion(element, E::metaClass());
  }
  /// Links to the owner, or to none. `position` is that of the owning property.
  void setContainer(Impl* owner, int position) noexcept {
    container_ = owner;
    containment_ = static_cast<std::uint8_t>(position);
  }
  Impl* container() const noexcept { return container_; }
  bool isContainedIn(const Impl& owner, int position) const noexcept {
    return container_ == &owner && containment_ == position;
  }
  /// The property of the owner that holds this element; only while there is an owner.
  const meta::PropertyInfo& containment() const noexcept {
    return *container_->getPropertyByIndex(containment_);
  }
  /// Takes the element out of its owner's collection; can be undone.
  void leaveContainer();
  /// Has an owner whose key is the property at this position store the element under another one.
  /// Raises "UniquenessConstraint" when there is an element under it.
  void rekey(int position, const void* key);
  /// Place in the owned sequence that holds this element.
  std::uint32_t order() const noexcept { return order_; }
  void setOrder(std::uint32_t order) noexcept { order_ = order; }
  Model::Impl& model() const noexcept { return *model_; }

  // See `Referrers`.
  bool isUntracked() const noexcept { return isUntracked_; }
  void setUntracked() noexcept { isUntracked_ = true; }
  void forgetReferrers() noexcept {
    referrers_ = 0;
    isUntracked_ = false;
  }
  /// To be called after a property of this element has come to refer to the target.
  void noteReference(Impl& target) const noexcept;

  /// True when exactly so many slots refer to this element, no outside handle does, and what it
  /// owns is referred to by it alone.
  bool isHeldOnlyBySlots(std::uint32_t slots) const noexcept;

 protected:
  Impl() noexcept = default;
  void setClassNumber(std::uint32_t number) noexcept {
    standing_.classNumber = static_cast<std::uint16_t>(number);
  }
  /// Gives an element in the making a new UUID.
  void identify() noexcept;

 private:
  friend class Model;
  friend class ModelElement;
  friend class ModelElement::Builder;
  friend class Storage;
  friend class Existence;
  friend class Referrers;

  // Staged: in a builder. Dying: being destroyed. Destroyed: a rollback may revive it. Ended: only
  // counts keep its memory.
  enum class Life : std::uint8_t { Staged, Alive, Dying, Destroyed, Ended };
  /// What is mostly asked for together, as one word.
  struct Standing {
    std::uint16_t classNumber = 0;
    Life life = Life::Staged;
    bool isProxy = false;
  };

  void recordValue(int position);
  void checkOwn(const meta::PropertyInfo& property) const {
    if (!getMetaClass().has(property)) [[unlikely]]
      raiseNotOwn(property);
  }
  [[noreturn]] void raiseNotOwn(const meta::PropertyInfo& property) const;
  [[noreturn]] void raiseNotOwn(std::string_view name) const;
  [[noreturn]] static void raiseProxy();
  [[noreturn]] static void raiseCrossModel();
  [[noreturn]] static void refuseInsertion(const ModelElement& element,
                                           const meta::ClassInfo& expected);
  void lastOutside() noexcept;
  void lastSlot() noexcept;

  Impl* container_ = nullptr;
  Storage* storage_ = nullptr;  // the newest undo record
  uuid uuid_{};
  std::uint32_t order_ = 0;
  std::uint32_t index_ = UINT32_MAX;  // in the model's creation order
  Model::Impl* model_ = nullptr;
  std::uint32_t given_ = 0;
  std::uint32_t referrers_ = 0;
  // Most uses of an element need these and its first properties, which are mostly in one line of
  // the cache with them.
  std::uint32_t outside_ = 0;
  std::uint32_t slots_ = 0;
  Standing standing_;
  std::uint8_t containment_ = 0;
  bool isUntracked_ = false;
};

inline ModelElement::ModelElement(Impl* element) noexcept
    : word_(reinterpret_cast<std::uintptr_t>(element)) {
  if (isSlot()) __builtin_unreachable();  // spares the tests of what this handle is moved to
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
inline ModelElement& ModelElement::assignHandle(Impl* target) noexcept {
  if (isSlot() && target) target->setUntracked();
  return assign(target);
}
inline void ModelElement::assignSlot(Impl* target) noexcept {
  Impl* const before = get();
  if (target) target->addSlot();
  word_ = reinterpret_cast<std::uintptr_t>(target) | slotTag;
  if (before) before->removeSlot();
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
