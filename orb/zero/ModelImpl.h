#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include <orb/zero/ElementPool.h>
#include <orb/zero/ModelConstellation.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/Referrers.h>
#include <orb/zero/TransactionCoordinator.h>

namespace orb::zero {

class UuidIndex;

/// Owns the elements of a model.
class ORB_ZERO_API Model::Impl : public Model::Count {
 public:
  using Element = ModelElement::Impl;
  using Staged = std::unique_ptr<Element, Element::Disposer>;

  Impl(const uuid& identity, const ModelConstellation& constellation,
       const WorkQueueFactory& workQueueFactory);
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  TransactionCoordinator& transactions() noexcept { return transactions_; }
  const std::shared_ptr<WorkQueue>& workQueue() const noexcept { return workQueue_; }
  ElementPool& pool() noexcept { return pool_; }

  Element* find(const uuid& id);
  /// Raises "UniquenessConstraint" when a live element has this UUID.
  void checkUnique(const uuid& id);
  /// Takes a staged element in. The handle keeps it when a listener ends it at once.
  ModelElement adopt(Staged staged, const uuid& id) {
    staged->uuid_ = id;
    const meta::ClassInfo& type = staged->getMetaClass();
    return adopt(std::move(staged), type);
  }
  /// The same for one of this very class that has its UUID.
  ModelElement adopt(Staged staged, const meta::ClassInfo& type) {
    if (transactions_.needsUnit() || transactions_.isRecordingAll() ||
        elements_.size() == elements_.capacity()) [[unlikely]]
      return adoptWithCare(std::move(staged), type);
    elements_.push_back(staged.get());
    return enroll(*staged.release(), type);
  }
  /// Makes an empty element; raises "InvalidValue" for an abstract class.
  ModelElement create(const meta::ClassInfo& type, const uuid& id);
  Staged stage(const meta::ClassInfo& type);
  Staged stage(Element& element) noexcept {
    element.model_ = this;
    return Staged(&element);
  }
  void dispose(Element& element) noexcept;
  uuid newUuid() noexcept { return newUuid_(); }

  /// Places in the creation order, of which some may be empty.
  std::uint32_t births() const noexcept { return static_cast<std::uint32_t>(elements_.size()); }
  const Element* born(std::uint32_t index) const noexcept { return elements_[index]; }
  Element* born(std::uint32_t index) noexcept { return elements_[index]; }
  /// Grows with every destruction and rollback: what was staged before may refer to what is gone.
  std::uint64_t losses() const noexcept { return losses_; }
  void lose() noexcept { ++losses_; }

  /// See `Model::createProxy`. A new one can take the place of the original in its owner.
  ModelElement proxy(const ProxyId& id, const Element* original = nullptr);
  Referrers& referrers() noexcept { return referrers_; }

  /// Ends the element and what it owns. What refers to it is cleared, or refers to the replacement.
  void destroy(Element& root, Element* replacement = nullptr);
  /// Clears what refers to the element.
  void disassociate(Element& target);
  std::size_t reclaim();

 private:
  friend class Model;
  friend class Model::Count;
  friend class ModelElement::Impl;
  friend class TransactionCoordinator;
  friend class Existence;
  friend class ElementRange;

  /// Those of one UUID. Only the latest to be made or revived may be alive.
  struct Proxies {
    Element* latest = nullptr;
    std::size_t count = 0;
  };

  ~Impl();
  ModelElement adoptWithCare(Staged staged, const meta::ClassInfo& type);
  /// The last element of the creation order becomes a live one.
  ModelElement enroll(Element& element, const meta::ClassInfo& type) noexcept;
  void endYoungerThan(std::uint32_t births) noexcept;
  /// Takes an element out of the model for good.
  void end(Element& element) noexcept;
  /// Has an element outside of the creation order let go of what it names, and frees its memory as
  /// soon as nothing counts it.
  void retire(Element& element) noexcept;
  /// Frees the memory of an ended element that nothing counts any more.
  void free(Element& element) noexcept;
  void compact() noexcept;
  /// Where the first member is in the creation order, or else the end.
  std::uint32_t firstMember() noexcept;
  /// Takes the element out of the creation order and the index.
  void remove(Element& element) noexcept;
  void disassociateIncoming(std::span<Element* const> targets, Element* replacement);
  static void copyKey(const Element& original, Element& copy);

  ElementPool pool_;
  std::size_t alive_ = 0;
  std::uint64_t losses_ = 0;
  std::vector<Element*> elements_;  // in the order of creation, with gaps
  std::size_t gaps_ = 0;
  std::uint32_t first_ = 0;      // no member is before it
  std::uint32_t readers_ = 0;    // ranges that must not see the order renumbered
  std::vector<Element*> ended_;  // still counted by a handle or a slot
  UuidGenerator newUuid_;
  Referrers referrers_{elements_};
  std::unique_ptr<UuidIndex> index_;  // made by the first look-up
  std::unordered_map<uuid, Proxies, UuidHash> proxies_;
  TransactionCoordinator transactions_;
  uuid identity_;
  ModelConstellation constellation_;
  std::shared_ptr<WorkQueue> workQueue_;
};

inline Model::Model(Impl* impl) noexcept : count_(impl) { impl->hold(); }
inline Model::Impl* Model::operator->() const noexcept { return static_cast<Impl*>(count_); }
inline void ModelElement::Impl::noteReference(Impl& target) const noexcept {
  if (index_ != UINT32_MAX) model_->referrers().note(target, index_);
}
inline ModelElement Model::Impl::enroll(Element& element, const meta::ClassInfo& type) noexcept {
  element.index_ = births() - 1;
  element.standing_.life = Element::Life::Alive;
  if (!element.isProxy()) ++alive_;
  type.note(element, referrers_);
  return ModelElement(&element);
}
inline void ModelElement::Impl::identify() noexcept { model_->newUuid_.fill(uuid_); }
inline void ModelElement::Impl::addRef() noexcept {
  if (outside_++ == 0) model_->hold();
}
inline void ModelElement::Impl::removeRef() noexcept {
  if (--outside_ != 0) return;
  Model::Impl& model = *model_;
  if (standing_.life == Life::Ended) [[unlikely]]
    lastOutside();
  model.release();
}
inline bool ModelElement::Impl::isRecorded() const noexcept {
  return model_->transactions().isRecording(index_);
}
}  // namespace orb::zero
