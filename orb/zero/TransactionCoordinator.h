#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <orb/zero/Model.h>

namespace orb::zero {

class UndoRecord;

/// Keeps the open transactions of a model, one savepoint each, and the log that undoes them.
///
/// Creations are not logged: what a transaction created is the tail of the model's creation-ordered
/// list. An element younger than the innermost savepoint needs no record of its changes either,
/// since its undo is its end.
class ORB_ZERO_API TransactionCoordinator {
 public:
  explicit TransactionCoordinator(Model::Impl& model);
  TransactionCoordinator(const TransactionCoordinator&) = delete;
  TransactionCoordinator& operator=(const TransactionCoordinator&) = delete;
  ~TransactionCoordinator();

  bool isOpen() const noexcept { return !savepoints_.empty(); }
  /// Whether changes of the element with this place in the creation order are logged.
  bool isRecording(std::uint32_t index) const noexcept { return index < recordedBelow_; }
  /// The number of the innermost open savepoint; every one opened has a higher one than before.
  std::uint64_t era() const noexcept { return savepoints_.back().era; }
  /// Number of elements of the creation order that are older than the innermost open transaction.
  std::uint32_t births() const noexcept { return recordedBelow_; }

  /// Opens a savepoint and returns its era.
  std::uint64_t begin();
  /// Ends a savepoint and all inner ones that are still open; one that has ended is left alone.
  void commit(std::uint64_t era) noexcept;
  void rollback(std::uint64_t era) noexcept;

  /// Makes room for one record, so that `log` cannot fail.
  void reserve();
  void log(std::unique_ptr<UndoRecord> record) noexcept;

  /// Told by the model when it closes the gaps in the creation order; `renumbered` maps the number
  /// of elements before the change to that after it.
  template <class F>
  void renumber(F renumbered) {
    for (Savepoint& savepoint : savepoints_) savepoint.births = renumbered(savepoint.births);
    recordedBelow_ = isOpen() ? savepoints_.back().births : 0;
  }

 private:
  struct Savepoint {
    std::uint64_t era;
    std::uint32_t births;
    std::size_t log;
  };
  bool isOpen(std::uint64_t era) const noexcept;
  void pop() noexcept;

  Model::Impl& model_;
  std::uint64_t eras_ = 0;
  std::uint32_t recordedBelow_ = 0;
  std::vector<Savepoint> savepoints_;
  std::vector<std::unique_ptr<UndoRecord>> log_;
};

}  // namespace orb::zero
