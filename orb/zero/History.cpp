#include <orb/zero/History.h>

#include <algorithm>
#include <unordered_map>

namespace orb::zero {
namespace {

/// An element that a step is about.
struct Concerned {
  ModelElement::Impl* element;
  bool wasAlive;
  std::vector<PropertyChange> properties;
};

/// Each element once, in the order of the records. No property is in the storages of one element
/// twice, nor one that the transaction left as it was.
std::vector<Concerned> concernedBy(const HistoryStep::Records& records) {
  std::vector<Concerned> all;
  std::unordered_map<const ModelElement::Impl*, std::size_t> places;
  for (const auto& record : records) {
    ModelElement::Impl& element = record->element();
    if (element.isProxy()) continue;
    const auto [place, isNew] = places.try_emplace(&element, all.size());
    if (isNew) all.push_back({&element, element.isAlive(), {}});
    const Storage* const storage = record->asStorage();
    if (!storage || !element.isAlive()) continue;
    for (const meta::PropertyInfo* property : element.getMetaClass().all)
      if (storage->isChanged(property->position))
        all[place->second].properties.push_back(
            {property, element.getPropertyValue(*property, ProxyTag::Keep), Value()});
  }
  return all;
}

}  // namespace

ModelChanges HistoryStep::flip(bool isUndo, bool isDescribed) {
  ModelChanges changes;
  if (!isDescribed) return flipRecords(isUndo), changes;
  std::vector<Concerned> concerned = concernedBy(records_);
  flipRecords(isUndo);
  try {
    for (Concerned& one : concerned) {
      ModelElement::Impl& element = *one.element;
      if (!one.wasAlive && element.isAlive()) {
        changes.created.emplace_back(&element);
      } else if (one.wasAlive && !element.isAlive()) {
        changes.destroyed.push_back({element.getUuid(), &element.getMetaClass()});
      } else if (element.isAlive() && !one.properties.empty()) {
        std::ranges::sort(one.properties, {},
                          [](const auto& change) { return change.property->position; });
        for (PropertyChange& change : one.properties)
          change.after = element.getPropertyValue(*change.property, ProxyTag::Keep);
        changes.changed.push_back({ModelElement(&element), std::move(one.properties)});
      }
    }
  } catch (...) {
    flipRecords(!isUndo);
    throw;
  }
  std::sort(changes.created.begin(), changes.created.end(),
            [](const auto& a, const auto& b) { return a->place() < b->place(); });
  return changes;
}

void HistoryStep::flipRecords(bool isUndo) noexcept {
  const auto flip = [](const auto& record) { record->flip(); };
  if (isUndo)
    std::for_each(records_.rbegin(), records_.rend(), flip);
  else
    std::for_each(records_.begin(), records_.end(), flip);
}

void HistoryStep::settle() noexcept {
  for (const auto& record : records_) record->settle();
  records_.clear();
}

void History::setLimit(std::size_t steps) noexcept {
  limit_ = steps;
  shorten(done, steps);
  shorten(undone, steps);
}

void History::push(HistoryStep step) noexcept {
  done.back() = std::move(step);
  shorten(undone, 0);
  shorten(done, limit_);
}

void History::shorten(std::deque<HistoryStep>& steps, std::size_t left) noexcept {
  for (; steps.size() > left; steps.pop_front()) steps.front().settle();
}

}  // namespace orb::zero
