#include <orb/zero/TransactionCoordinator.h>

#include <algorithm>

#include <orb/zero/ModelElement.h>
#include <orb/zero/UndoRecord.h>

namespace orb::zero {

TransactionCoordinator::TransactionCoordinator(Model::Impl& model) : model_(model) {}
TransactionCoordinator::~TransactionCoordinator() = default;

bool TransactionCoordinator::isOpen(std::uint64_t era) const noexcept {
  return std::any_of(savepoints_.begin(), savepoints_.end(),
                     [=](const Savepoint& savepoint) { return savepoint.era == era; });
}

std::uint64_t TransactionCoordinator::begin() {
  savepoints_.push_back({++eras_, model_.births(), log_.size()});
  recordedBelow_ = savepoints_.back().births;
  return eras_;
}

void TransactionCoordinator::pop() noexcept {
  savepoints_.pop_back();
  recordedBelow_ = isOpen() ? savepoints_.back().births : 0;
}

/// A committed savepoint leaves its part of the log to the outer one; the outermost settles all.
void TransactionCoordinator::commit(std::uint64_t era) noexcept {
  if (!isOpen(era)) return;
  while (savepoints_.back().era != era) pop();
  pop();
  if (isOpen()) return;
  for (const auto& record : log_) record->settle();
  log_.clear();
}

void TransactionCoordinator::rollback(std::uint64_t era) noexcept {
  while (isOpen(era)) {
    const Savepoint start = savepoints_.back();
    pop();
    // An element younger than the savepoint is about to end; later changes of it may not be logged.
    for (; log_.size() > start.log; log_.pop_back())
      if (log_.back()->element().isOlderThan(start.births)) log_.back()->undo();
    model_.endYoungerThan(start.births);
  }
}

void TransactionCoordinator::reserve() {
  if (log_.size() == log_.capacity()) log_.reserve(std::max<std::size_t>(16, 2 * log_.size()));
}
void TransactionCoordinator::log(std::unique_ptr<UndoRecord> record) noexcept {
  log_.push_back(std::move(record));
}

}  // namespace orb::zero
