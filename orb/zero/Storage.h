#pragma once

#include <cstdint>
#include <vector>

#include <orb/zero/UndoRecord.h>
#include <orb/zero/Value.h>

namespace orb::zero {

/// One change of a collection, in the log and in the chain of its element's storage.
class ORB_ZERO_API CollectionChange : public UndoRecord {
 public:
  CollectionChange(ModelElement::Impl& owner, int position) noexcept
      : UndoRecord(owner), position_(position) {}

  /// Takes the change back or makes it again. Without `links` the children keep the owner and place
  /// that they have, for a look at what was before.
  virtual void exchange(bool links) noexcept = 0;

  void flip() noexcept final { exchange(true); }
  void unlink() noexcept final;

 private:
  friend class Storage;

  int position_;
  CollectionChange* before_ = nullptr;  // of the same storage
};

/// What a transaction changed of one element, and what was there before: the single values, in
/// typed slots that are laid out per class (see `StorageOf` in meta/Emit.h), and the changes of
/// collections. Every savepoint keeps its own. Bit n of the masks stands for position n.
class ORB_ZERO_API Storage : public UndoRecord {
 public:
  explicit Storage(ModelElement::Impl& element) noexcept : UndoRecord(element) {}

  void flip() noexcept override;
  void unlink() noexcept override;
  Storage* asStorage() noexcept final { return this; }

  bool isChanged() const noexcept { return changed_ != 0; }
  bool isChanged(int position) const noexcept { return (changed_ >> position) & 1; }
  /// Of the same element, made in an outer savepoint; null for the outermost one.
  Storage* previous() const noexcept { return previous_; }

  /// The value of the property when the savepoint began; the present one when it is not changed.
  Value getOldValue(const meta::PropertyInfo& property, ProxyTag tag = ProxyTag::Resolve) const;
  /// Whether a changed property is again as it was. Of a keyed collection only the simplest cases
  /// are looked at: none before and now, or the same single child under the same key.
  bool isUnchanged(const meta::PropertyInfo& property) const;
  /// Clears the bits of the properties that are again as they were.
  void revertUnchanged();

  // What records changes.

  /// Makes it the newest of its element.
  void push(std::uint64_t era) noexcept;
  std::uint64_t era() const noexcept { return era_; }
  /// Keeps the present value of a single property, once.
  void keep(const meta::PropertyInfo& property);
  /// Keeps marks for a history: those of what did change and of which no outer storage knows. Inner
  /// storages come first.
  void settleMarks();
  /// Notes a change of a collection.
  void add(CollectionChange& change) noexcept;

 private:
  friend class CollectionChange;
  friend class Rewound;

  bool mayBeUnchanged(const meta::PropertyInfo& collection) const;
  std::vector<CollectionChange*> changesSince(int position) const;

  Storage* previous_ = nullptr;
  CollectionChange* last_ = nullptr;
  std::uint64_t era_ = 0;
  std::uint32_t changed_ = 0;
  std::uint32_t given_ = 0;
};

/// As long as it lives, a collection reads as it was when a savepoint began.
class ORB_ZERO_API Rewound {
 public:
  Rewound(const Storage& until, int position);
  Rewound(const Rewound&) = delete;
  Rewound& operator=(const Rewound&) = delete;
  ~Rewound();

 private:
  std::vector<CollectionChange*> changes_;  // newest first
};

inline void ModelElement::Impl::notifyModifying(int position) {
  if (!isRecorded()) return;
  if (storage_ && storage_->era() >= model_->transactions().era() && storage_->isChanged(position))
    return;
  recordValue(position);
}

}  // namespace orb::zero
