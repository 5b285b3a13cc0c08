#include <orb/zero/Storage.h>

#include <algorithm>
#include <utility>

#include <orb/zero/ModelImpl.h>

namespace orb::zero {

void CollectionChange::unlink() noexcept { element().storage()->last_ = before_; }

void Storage::push(std::uint64_t era) noexcept {
  era_ = era;
  previous_ = std::exchange(element().storage_, this);
}

void Storage::unlink() noexcept { element().storage_ = previous_; }

void Storage::keep(const meta::PropertyInfo& property) {
  property.services.save(element(), *this);
  changed_ |= 1u << property.position;
  given_ |= element().given_ & (1u << property.position);
}

void Storage::add(CollectionChange& change) noexcept {
  changed_ |= 1u << change.position_;
  change.before_ = std::exchange(last_, &change);
}

void Storage::flip() noexcept {
  ModelElement::Impl& changed = element();
  for (const meta::PropertyInfo* property : changed.getMetaClass().all)
    if (isChanged(property->position) && property->services.exchange)
      property->services.exchange(changed, *this);
  const std::uint32_t given = changed.given_ & changed_;
  changed.given_ = (changed.given_ & ~changed_) | (given_ & changed_);
  given_ = given;
}

Value Storage::getOldValue(const meta::PropertyInfo& property, ProxyTag tag) const {
  if (!isChanged(property.position)) return element().getPropertyValue(property, tag);
  if (property.services.getOld) {
    const bool wasUnset = !property.type && ((given_ >> property.position) & 1) == 0;
    return wasUnset ? Value() : property.services.getOld(*this, tag);
  }
  const Rewound rewound(*this, property.position);
  return element().getPropertyValue(property, tag);
}

bool Storage::isUnchanged(const meta::PropertyInfo& property) const {
  const std::uint32_t bit = 1u << property.position;
  return (element().given_ & bit) == (given_ & bit) &&
         (!property.services.size || mayBeUnchanged(property)) &&
         property.services.isUnchanged(element(), *this);
}

/// Spares most comparisons of whole contents: what changed once is not as it was, nor is what has
/// another size.
bool Storage::mayBeUnchanged(const meta::PropertyInfo& collection) const {
  if (changesSince(collection.position).size() < 2) return false;
  const std::size_t size = collection.services.size(element());
  const Rewound rewound(*this, collection.position);
  return collection.services.size(element()) == size;
}

/// The changes of a collection since the savepoint began, the newest first.
std::vector<CollectionChange*> Storage::changesSince(int position) const {
  std::vector<CollectionChange*> changes;
  const Storage* storage = element().storage();
  for (bool isDone = false; !isDone; storage = storage->previous()) {
    for (CollectionChange* change = storage->last_; change; change = change->before_)
      if (change->position_ == position) changes.push_back(change);
    isDone = storage == this;
  }
  return changes;
}

void Storage::settleMarks() {
  for (const Storage* outer = previous_; outer && changed_ != 0; outer = outer->previous_)
    changed_ &= ~outer->changed_;
  revertUnchanged();
}

void Storage::revertUnchanged() {
  for (const meta::PropertyInfo* property : element().getMetaClass().all)
    if (isChanged(property->position) && isUnchanged(*property))
      changed_ &= ~(1u << property->position);
}

Rewound::Rewound(const Storage& until, int position) : changes_(until.changesSince(position)) {
  for (CollectionChange* change : changes_) change->exchange(false);
}

Rewound::~Rewound() {
  std::for_each(changes_.rbegin(), changes_.rend(),
                [](CollectionChange* change) { change->exchange(false); });
}

}  // namespace orb::zero
