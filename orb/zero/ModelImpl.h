#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <orb/zero/ElementPool.h>
#include <orb/zero/ModelConstellation.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/TransactionCoordinator.h>

namespace orb::zero {

class ReferrerIndex;
class UuidIndex;

/// Owns the elements of a model.
class ORB_ZERO_API Model::Impl {
 public:
  using Element = ModelElement::Impl;
  using Staged = std::unique_ptr<Element, Element::Disposer>;

  Impl(const uuid& identity, const ModelConstellation& constellation,
       const WorkQueueFactory& workQueueFactory);
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  /// Counts model handles and elements held outside; the last one ends the model.
  void hold() noexcept { ++held_; }
  void release() noexcept {
    if (--held_ == 0) delete this;
  }

  TransactionCoordinator& transactions() noexcept { return transactions_; }
  WorkQueue& workQueue() noexcept { return *workQueue_; }

  Element* find(const uuid& id);
  /// Raises "UniquenessConstraint" when a live element has this UUID.
  void checkUnique(const uuid& id);
  /// Takes a staged element in.
  Element& adopt(Staged staged, const uuid& id);
  /// Makes an empty element; raises "InvalidValue" for an abstract class.
  Element& create(const meta::ClassInfo& type, const uuid& id);
  Staged stage(const meta::ClassInfo& type);
  void dispose(Element& element) noexcept;
  uuid newUuid() noexcept { return newUuid_(); }

  /// Places in the creation order, of which some may be empty.
  std::uint32_t births() const noexcept { return static_cast<std::uint32_t>(elements_.size()); }
  const Element* born(std::uint32_t index) const noexcept { return elements_[index]; }
  Element* born(std::uint32_t index) noexcept { return elements_[index]; }
  /// Grows with every destruction and rollback: what was staged before may refer to what is gone.
  std::uint64_t losses() const noexcept { return losses_; }

  void destroy(Element& root);
  std::size_t reclaim();

 private:
  friend class Model;
  friend class ModelElement::Impl;
  friend class TransactionCoordinator;
  friend class Destruction;
  friend class ElementRange;

  ~Impl();
  void endYoungerThan(std::uint32_t births) noexcept;
  /// Takes an element out of the model for good; its slots let go of what they name.
  void end(Element& element) noexcept;
  /// Frees the memory of an ended element that nothing counts any more.
  void free(Element& element) noexcept;
  void compact() noexcept;
  /// Takes the element out of the creation order and the index.
  void remove(Element& element) noexcept;
  void disassociateIncoming(const std::vector<Element*>& doomed, std::size_t slots);
  std::size_t clearDying(std::uint32_t place);

  ElementPool pool_;
  std::size_t held_ = 0;
  std::size_t alive_ = 0;
  std::uint64_t losses_ = 0;
  std::vector<Element*> elements_;  // in the order of creation, with gaps
  std::size_t gaps_ = 0;
  std::uint32_t readers_ = 0;    // ranges that must not see the order renumbered
  std::vector<Element*> ended_;  // still counted by a handle or a slot
  UuidGenerator newUuid_;
  std::unique_ptr<ReferrerIndex> referrers_;  // made by a destruction that needs it
  std::unique_ptr<UuidIndex> index_;          // made by the first look-up
  TransactionCoordinator transactions_;
  uuid identity_;
  ModelConstellation constellation_;
  std::shared_ptr<WorkQueue> workQueue_;
};

inline void ModelElement::Impl::addRef() noexcept {
  if (outside_++ == 0) model_->hold();
}
inline bool ModelElement::Impl::isRecorded() const noexcept {
  return model_->transactions().isRecording(index_);
}

}  // namespace orb::zero
