#pragma once

#include <memory>
#include <utility>

#include <orb/zero/Slot.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/UndoRecord.h>

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

 protected:
  ~Collection() = default;

  ModelElement::Impl& owner() const noexcept { return owner_; }
  const meta::PropertyInfo& property() const { return property_(); }

  bool isRecorded() const noexcept { return owner_.isRecorded(); }
  /// Puts the inverse of a change into the log, to be called before the change; only while
  /// `isRecorded()`. Returns the logged function object.
  template <class Undo>
  Undo& log(Undo undo) const {
    TransactionCoordinator& transactions = owner_.model().transactions();
    transactions.reserve();
    auto record = std::make_unique<Change<Undo>>(owner_, std::move(undo));
    Undo& logged = record->undo_;
    transactions.log(std::move(record));
    return logged;
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
  template <class Undo>
  struct Change final : UndoRecord {
    Change(ModelElement::Impl& owner, Undo undo) : UndoRecord(owner), undo_(std::move(undo)) {}
    void undo() noexcept override { undo_(); }

    Undo undo_;
  };

  ModelElement::Impl& owner_;
  Descriptor property_;
};

}  // namespace orb::zero
