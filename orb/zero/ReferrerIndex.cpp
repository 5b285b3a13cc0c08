#include <orb/zero/ReferrerIndex.h>

#include <algorithm>

#include <orb/zero/Targets.h>

namespace orb::zero {

void ReferrerIndex::find(const ModelElement::Impl& target, const Elements& all,
                         std::vector<std::uint32_t>& places) {
  catchUp(all);
  const auto first = first_.find(&target);
  if (first == first_.end()) return;
  for (std::uint32_t at = first->second; at != 0; at = entries_[at - 1].next)
    if (entries_[at - 1].place < all.size()) places.push_back(entries_[at - 1].place);
}

void ReferrerIndex::truncate(std::uint32_t size) noexcept { covered_ = std::min(covered_, size); }

void ReferrerIndex::catchUp(const Elements& all) {
  Targets targets;
  for (; covered_ < all.size(); ++covered_) {
    if (!all[covered_]) continue;
    targets.found.clear();
    for (const meta::PropertyInfo* property : all[covered_]->getMetaClass().all)
      if (!property->isOwning) property->services.targets(*all[covered_], targets);
    for (const ModelElement::Impl* target : targets.found) {
      std::uint32_t& first = first_[target];
      entries_.push_back({covered_, first});
      first = static_cast<std::uint32_t>(entries_.size());
    }
  }
}

}  // namespace orb::zero
