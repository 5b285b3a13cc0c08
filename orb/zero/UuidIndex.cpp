#include <orb/zero/UuidIndex.h>

#include <bit>

#include <orb/zero/Probing.h>

namespace orb::zero {

ModelElement::Impl* UuidIndex::find(const uuid& id, const Elements& all) {
  catchUp(all);
  if (table_.empty()) return nullptr;
  const std::uint32_t hash = hashOf(id);
  for (std::size_t at = home(hash); table_[at].isTaken(); at = next(at)) {
    if (table_[at].hash != hash) continue;
    ModelElement::Impl* const element = all[table_[at].place];
    if (element->getUuid() == id && element->isMember()) return element;
  }
  return nullptr;
}

void UuidIndex::catchUp(const Elements& all) {
  const std::size_t wanted = taken_ + (all.size() - covered_);
  if (2 * wanted > table_.size()) {
    std::vector<Entry> bigger(std::bit_ceil(2 * wanted));
    bigger.swap(table_);
    for (const Entry& entry : bigger)
      if (entry.isTaken()) insert(entry);
  }
  for (; covered_ < all.size(); ++covered_) {
    if (!all[covered_]) continue;
    insert({hashOf(all[covered_]->getUuid()), covered_});
    ++taken_;
  }
}

void UuidIndex::insert(Entry entry) noexcept {
  std::size_t at = home(entry.hash);
  while (table_[at].isTaken()) at = next(at);
  table_[at] = entry;
}

void UuidIndex::erase(const ModelElement::Impl& element, std::uint32_t index) noexcept {
  if (index >= covered_) return;
  std::size_t gap = home(hashOf(element.getUuid()));
  while (table_[gap].place != index) gap = next(gap);
  closeGap(table_, gap, [this](const Entry& entry) { return home(entry.hash); });
  --taken_;
}

void UuidIndex::renumber(const Elements& all) noexcept {
  for (Entry& entry : table_)
    if (entry.isTaken()) entry.place = all[entry.place]->place();
  covered_ = static_cast<std::uint32_t>(taken_);
}

}  // namespace orb::zero
