#include <orb/zero/TransactionCoordinator.h>

#include <algorithm>
#include <utility>

#include <orb/zero/Exception.h>
#include <orb/zero/History.h>
#include <orb/zero/ModelElement.h>

namespace orb::zero {

TransactionCoordinator::TransactionCoordinator(Model::Impl& model) : model_(model) {}
TransactionCoordinator::~TransactionCoordinator() = default;

bool TransactionCoordinator::isOpen(std::uint64_t era) const noexcept {
  return std::ranges::binary_search(savepoints_, era, {}, &Savepoint::era);
}

std::uint64_t TransactionCoordinator::begin() {
  if (isFrozen()) raise("CannotModifyFrozenModel");
  savepoints_.push_back({eras_ + 1, model_.births(), log_.size()});
  ++eras_;
  update();
  return eras_;
}

void TransactionCoordinator::pop() noexcept {
  savepoints_.pop_back();
  update();
}

/// What the paths of a change ask for all the time.
void TransactionCoordinator::update() noexcept {
  era_ = isOpen() ? savepoints_.back().era : 0;
  recordedBelow_ = !isOpen() ? 0 : history_ ? all : savepoints_.back().births;
  needsUnit_ = !isOpen() && (isFrozen() || listeners_ || history_);
}

/// A committed savepoint leaves its part of the log to the outer one; the outermost settles all.
void TransactionCoordinator::commit(std::uint64_t era) {
  if (!isOpen(era)) return;
  while (savepoints_.back().era != era) pop();
  if (savepoints_.size() > 1 || (log_.empty() && !listeners_ && !history_)) return pop();
  settleOutermost();
}

void TransactionCoordinator::settleOutermost() {
  if (history_)
    for (auto record = log_.rbegin(); record != log_.rend(); ++record)
      if (Storage* const storage = (*record)->asStorage()) storage->settleMarks();
  ModelChanges changes;
  if (listeners_) changes = describe();
  const bool isRemembered = history_ && hasChanged();
  if (isRemembered) {
    history_->done.emplace_back();  // room, before anything is final
  } else if (history_) {  // former steps name places in sequences, which are taken back as well
    for (auto record = log_.rbegin(); record != log_.rend(); ++record)
      if (!(*record)->element().isProxy()) (*record)->flip();
  }
  std::for_each(log_.rbegin(), log_.rend(), [](const auto& record) { record->unlink(); });
  pop();
  if (isRemembered) {
    history_->push(HistoryStep(std::exchange(log_, {})));
  } else {
    for (const auto& record : log_) record->settle();
    log_.clear();
  }
  if (!changes.isEmpty()) post(std::move(changes));
}

void TransactionCoordinator::rollback(std::uint64_t era) noexcept {
  while (isOpen(era)) {
    const Savepoint start = savepoints_.back();
    pop();
    // An element younger than the savepoint is about to end; later changes of it may not be logged.
    for (; log_.size() > start.log; log_.pop_back()) {
      if (log_.back()->element().isOlderThan(start.births)) log_.back()->flip();
      log_.back()->unlink();
    }
    model_.endYoungerThan(start.births);
  }
}

void TransactionCoordinator::log(std::unique_ptr<UndoRecord> record) noexcept {
  log_.push_back(std::move(record));
}

void TransactionCoordinator::grow() { log_.reserve(std::max<std::size_t>(64, 2 * log_.size())); }

/// Whether there is anything to describe, once the marks are settled, or a proxy came, went or was
/// changed, as another step may name it. Looks at no contents.
bool TransactionCoordinator::hasChanged() const {
  const std::uint32_t births = savepoints_.front().births;
  for (std::uint32_t place = births; place < model_.births(); ++place)
    if (const ModelElement::Impl* const element = model_.born(place))
      if (element->isAlive()) return true;
  return std::any_of(log_.begin(), log_.end(), [=](const auto& record) {
    const ModelElement::Impl& element = record->element();
    if (!element.isOlderThan(births)) return false;
    if (!element.isAlive()) return record->isDestruction();
    const Storage* const storage = record->asStorage();
    return storage && storage->isChanged();
  });
}

/// The changes of an element that was there before are told once, at its outermost storage.
ModelChanges TransactionCoordinator::describe() {
  const std::uint32_t births = savepoints_.front().births;
  ModelChanges changes;
  for (std::uint32_t place = births; place < model_.births(); ++place)
    if (ModelElement::Impl* const element = model_.born(place))
      if (element->isMember()) changes.created.emplace_back(element);
  for (const auto& record : log_) {
    ModelElement::Impl& element = record->element();
    if (!element.isOlderThan(births) || element.isProxy()) continue;
    if (record->isDestruction() && !element.isAlive())
      changes.destroyed.push_back({element.getUuid(), &element.getMetaClass()});
    const Storage* const storage = record->asStorage();
    if (!storage || storage->previous() || !element.isAlive()) continue;
    ElementChange change = element.createChanges();
    if (!change.properties.empty()) changes.changed.push_back(std::move(change));
  }
  return changes;
}

void TransactionCoordinator::post(ModelChanges changes) {
  if (!listeners_) return;
  const std::shared_ptr<WorkQueue> queue = model_.workQueue();  // outlives what listeners let go
  queue->post([listeners = listeners_, changes = std::move(changes)] {
    for (const auto& listener : *listeners) {
      try {
        listener->changed(changes);
      } catch (...) {  // see `ModelListener`
      }
    }
  });
}

void TransactionCoordinator::checkNoneOpen() const {
  if (isOpen()) raise("TransactionInProgress");
}

void TransactionCoordinator::freeze() {
  checkNoneOpen();
  isFrozen_ = true;
  update();
}

void TransactionCoordinator::addListener(std::shared_ptr<ModelListener> listener) {
  checkNoneOpen();
  if (!listener) raise("InvalidValue");
  Listeners listeners = listeners_ ? *listeners_ : Listeners();
  listeners.push_back(std::move(listener));
  setListeners(std::move(listeners));
}

void TransactionCoordinator::removeListener(const std::shared_ptr<ModelListener>& listener) {
  checkNoneOpen();
  if (!listeners_) return;
  Listeners listeners = *listeners_;
  std::erase(listeners, listener);
  setListeners(std::move(listeners));
}

/// As a new list, since work that waits in the queue goes on with the former one.
void TransactionCoordinator::setListeners(Listeners listeners) {
  listeners_ =
      listeners.empty() ? nullptr : std::make_shared<const Listeners>(std::move(listeners));
  update();
}

void TransactionCoordinator::setHistoryLimit(std::size_t steps) {
  checkNoneOpen();
  if (steps == 0) {
    forgetHistory();
  } else {
    if (!history_) history_ = std::make_unique<History>();
    history_->setLimit(steps);
  }
  update();
}

void TransactionCoordinator::forgetHistory() noexcept {
  if (history_) history_->setLimit(0);
  history_.reset();
  update();
}

bool TransactionCoordinator::undo() { return flip(true); }
bool TransactionCoordinator::redo() { return flip(false); }

bool TransactionCoordinator::flip(bool isUndo) {
  checkNoneOpen();
  if (isFrozen()) raise("CannotModifyFrozenModel");
  if (!history_) return false;
  auto& from = isUndo ? history_->done : history_->undone;
  auto& to = isUndo ? history_->undone : history_->done;
  if (from.empty()) return false;

  to.emplace_back();
  ModelChanges changes;
  try {
    changes = from.back().flip(isUndo, listeners_ != nullptr);
  } catch (...) {
    to.pop_back();
    throw;
  }
  to.back() = std::move(from.back());
  from.pop_back();
  model_.lose();
  if (!changes.isEmpty()) post(std::move(changes));
  return true;
}

}  // namespace orb::zero
