#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include <orb/zero/ModelChanges.h>
#include <orb/zero/Storage.h>

namespace orb::zero {

/// The records of one committed outermost transaction.
class HistoryStep {
 public:
  using Records = std::vector<std::unique_ptr<UndoRecord>>;

  HistoryStep() = default;
  explicit HistoryStep(Records records) noexcept : records_(std::move(records)) {}

  /// Takes the transaction back, or makes it again. Describes what that does, if it is wanted. When
  /// memory runs out, nothing has changed.
  ModelChanges flip(bool isUndo, bool isDescribed);
  /// Makes the present state final: it can neither be undone nor redone any more.
  void settle() noexcept;

 private:
  void flipRecords(bool isUndo) noexcept;

  Records records_;
};

/// The latest transactions of a model, as many as it keeps.
class History {
 public:
  std::size_t limit() const noexcept { return limit_; }
  void setLimit(std::size_t steps) noexcept;
  /// Fills the last step of `done`; what was undone can no longer be redone.
  void push(HistoryStep step) noexcept;

  std::deque<HistoryStep> done, undone;  // the next one to flip comes last

 private:
  static void shorten(std::deque<HistoryStep>& steps, std::size_t left) noexcept;

  std::size_t limit_ = 0;
};

}  // namespace orb::zero
