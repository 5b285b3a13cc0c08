#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <orb/zero/Slot.h>
#include <orb/zero/Storage.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/Unit.h>

namespace orb::zero {

/// What the collections of an element share: their owner, their property, and how a change gets
/// into the log of the open transaction.
class ORB_ZERO_API Collection {
 public:
  using Descriptor = const meta::PropertyInfo& (*)();

  Collection(ModelElement::Impl& element, Descriptor descriptor) noexcept
      : owner_(element), property_(descriptor) {}
  Collection(const Collection&) = delete;
  Collection& operator=(const Collection&) = delete;

  /// Raises what adding one of the elements would.
  template <class E>
  void checkAll(const std::vector<E>& elements) const {
    owner_.checkNoProxy();
    for (const E& element : elements) owner_.checkInsertion<E>(element);
  }

 protected:
  ~Collection() = default;

  ModelElement::Impl& owner() const noexcept { return owner_; }
  const meta::PropertyInfo& property() const { return property_(); }

  bool isRecorded() const noexcept { return owner_.isRecorded(); }
  /// Puts a change into the log, to be called before it is made; only while `isRecorded()`. A
  /// `Change` has `exchange(bool links)`, see `CollectionChange`. Returns the logged one.
  template <class Change>
  Change& log(Change change) const {
    const int position = property().position;
    Storage& storage = owner_.storageOfSavepoint();
    TransactionCoordinator& transactions = owner_.model().transactions();
    transactions.reserve();
    auto* const record = new (owner_.model()) Record<Change>(owner_, position, std::move(change));
    storage.add(*record);
    transactions.log(std::unique_ptr<UndoRecord>(record));
    return record->change_;
  }

  /// Makes a change, by way of the log where it is recorded.
  template <class Change>
  void perform(Change change) const {
    isRecorded() ? log(std::move(change)).exchange(true) : change.exchange(true);
  }

  /// Whether the element is a child of this collection.
  bool owns(const ModelElement::Impl& child) const {
    return child.isContainedIn(owner_, property().position);
  }
  void adopt(ModelElement::Impl& child) const { child.setContainer(&owner_, property().position); }
  /// Lets a child go, unless it has moved on to another owner already.
  void disown(ModelElement::Impl& child) const noexcept {
    if (child.container() == &owner_) child.setContainer(nullptr, 0);
  }
  /// Takes an element away from the owner that it has, as one unit with what `insert` does then.
  template <class Insert>
  void move(ModelElement::Impl& child, Insert insert) const {
    if (!child.container()) return insert();
    Transaction unit(owner_.getModel());
    child.leaveContainer();
    insert();
    unit.commit();
  }

 private:
  template <class Change>
  struct Record final : CollectionChange {
    Record(ModelElement::Impl& owner, int position, Change change)
        : CollectionChange(owner, position), change_(std::move(change)) {}
    void exchange(bool links) noexcept override { change_.exchange(links); }
    std::size_t size() const noexcept override { return sizeof *this; }

    Change change_;
  };

  ModelElement::Impl& owner_;
  Descriptor property_;
};

}  // namespace orb::zero
