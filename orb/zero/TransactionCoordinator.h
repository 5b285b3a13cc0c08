#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <orb/zero/Model.h>

namespace orb::zero {

class History;
class ModelListener;
class UndoRecord;
struct ModelChanges;

/// Keeps the open transactions of a model, one savepoint each, the log that undoes them, and who is
/// to know what they did.
///
/// Creations are not logged: what a transaction created is the tail of the model's creation-ordered
/// list. An element younger than the innermost savepoint needs no record of its changes either,
/// since its undo is its end. With a history, which has to bring such elements back, all is logged.
class ORB_ZERO_API TransactionCoordinator {
 public:
  explicit TransactionCoordinator(Model::Impl& model);
  TransactionCoordinator(const TransactionCoordinator&) = delete;
  TransactionCoordinator& operator=(const TransactionCoordinator&) = delete;
  ~TransactionCoordinator();

  bool isOpen() const noexcept { return !savepoints_.empty(); }
  /// Whether a single change has to be a transaction of its own (see `Unit`).
  bool needsUnit() const noexcept { return needsUnit_; }
  /// Whether changes of the element with this place in the creation order are logged.
  bool isRecording(std::uint32_t index) const noexcept { return index < recordedBelow_; }
  /// Whether creations are logged as well.
  bool isRecordingAll() const noexcept { return recordedBelow_ == all; }
  /// Whether there may be records of former changes.
  bool keepsRecords() const noexcept { return isOpen() || history_; }
  /// The number of the innermost open savepoint; every one opened has a higher one than before.
  std::uint64_t era() const noexcept { return era_; }
  /// Number of elements of the creation order that are older than the innermost open transaction.
  std::uint32_t births() const noexcept { return isOpen() ? savepoints_.back().births : 0; }
  /// Whether the element with this place in the creation order is one of the open transaction.
  bool isNew(std::uint32_t index) const noexcept {
    return isOpen() && index >= savepoints_.front().births;
  }

  /// Opens a savepoint and returns its era. Raises "CannotModifyFrozenModel" in a frozen model.
  std::uint64_t begin();
  /// Ends a savepoint and all inner ones that are still open; one that has ended is left alone.
  /// May run out of memory when listeners are to be told of much; the savepoint is open then.
  void commit(std::uint64_t era);
  void rollback(std::uint64_t era) noexcept;

  /// Makes room for one record, so that `log` cannot fail.
  void reserve() {
    if (log_.size() == log_.capacity()) [[unlikely]]
      grow();
  }
  void log(std::unique_ptr<UndoRecord> record) noexcept;

  /// Whether changes are refused.
  bool isFrozen() const noexcept { return isFrozen_ && thaws_ == 0 && !isOpen(); }
  /// See `Model::Freezer::Thaw`.
  void beginThaw() noexcept {
    ++thaws_;
    update();
  }
  void endThaw() noexcept {
    --thaws_;
    update();
  }

  // See `Model`, and `Model::Freezer`. All raise "TransactionInProgress" in an open transaction.
  void freeze();
  void addListener(std::shared_ptr<ModelListener> listener);
  void removeListener(const std::shared_ptr<ModelListener>& listener);
  void setHistoryLimit(std::size_t steps);
  const History* history() const noexcept { return history_.get(); }
  bool undo();
  bool redo();
  void forgetHistory() noexcept;

  /// Told by the model when it closes the gaps in the creation order; `renumbered` maps the number
  /// of elements before the change to that after it.
  template <class F>
  void renumber(F renumbered) {
    for (Savepoint& savepoint : savepoints_) savepoint.births = renumbered(savepoint.births);
    update();
  }

 private:
  static constexpr std::uint32_t all = UINT32_MAX;

  struct Savepoint {
    std::uint64_t era;
    std::uint32_t births;
    std::size_t log;
  };
  bool isOpen(std::uint64_t era) const noexcept;
  void pop() noexcept;
  void update() noexcept;
  void grow();
  void checkNoneOpen() const;
  void settleOutermost();
  bool hasChanged() const;
  ModelChanges describe();
  void post(ModelChanges changes);
  bool flip(bool isUndo);
  using Listeners = std::vector<std::shared_ptr<ModelListener>>;
  void setListeners(Listeners listeners);

  Model::Impl& model_;
  std::uint64_t eras_ = 0;
  std::uint64_t era_ = 0;
  std::uint32_t recordedBelow_ = 0;
  bool needsUnit_ = false;
  bool isFrozen_ = false;
  std::size_t thaws_ = 0;
  std::vector<Savepoint> savepoints_;
  std::vector<std::unique_ptr<UndoRecord>> log_;
  std::unique_ptr<History> history_;
  std::shared_ptr<const Listeners> listeners_;  // null for none
};

}  // namespace orb::zero
