#include <orb/zero/UuidIndex.h>

#include <bit>

namespace orb::zero {

ModelElement::Impl* UuidIndex::find(const uuid& id, const Elements& all) {
  catchUp(all);
  if (table_.empty()) return nullptr;
  for (std::size_t at = home(id); table_[at]; at = (at + 1) & (table_.size() - 1))
    if (table_[at]->getUuid() == id && table_[at]->isMember()) return table_[at];
  return nullptr;
}

void UuidIndex::catchUp(const Elements& all) {
  const std::size_t wanted = taken_ + (all.size() - covered_);
  if (2 * wanted > table_.size()) {
    Elements bigger(std::bit_ceil(4 * wanted));
    bigger.swap(table_);
    for (ModelElement::Impl* element : bigger)
      if (element) insert(*element);
  }
  for (; covered_ < all.size(); ++covered_) {
    if (!all[covered_]) continue;
    insert(*all[covered_]);
    ++taken_;
  }
}

void UuidIndex::insert(ModelElement::Impl& element) noexcept {
  std::size_t at = home(element.getUuid());
  while (table_[at]) at = (at + 1) & (table_.size() - 1);
  table_[at] = &element;
}

/// Closes the gap by moving up those whose probing passed over it.
void UuidIndex::erase(const ModelElement::Impl& element, std::uint32_t index) noexcept {
  if (index >= covered_) return;
  const std::size_t mask = table_.size() - 1;
  std::size_t gap = home(element.getUuid());
  while (table_[gap] != &element) gap = (gap + 1) & mask;
  for (std::size_t at = (gap + 1) & mask; table_[at]; at = (at + 1) & mask) {
    const std::size_t distance = (at - home(table_[at]->getUuid())) & mask;
    if (distance < ((at - gap) & mask)) continue;
    table_[gap] = table_[at];
    gap = at;
  }
  table_[gap] = nullptr;
  --taken_;
}

}  // namespace orb::zero
