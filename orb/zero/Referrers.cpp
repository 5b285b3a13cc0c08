#include <orb/zero/Referrers.h>

#include <algorithm>
#include <new>

#include <orb/zero/meta/ClassInfo.h>

namespace orb::zero {

void Referrers::add(Element& target, std::uint32_t place) noexcept {
  if (target.slotCount() > popular_ || (entries_.size() == entries_.capacity() && !hasRoom())) {
    target.setUntracked();
    return;
  }
  // The only reference makes all earlier ones past.
  entries_.push_back({place, target.slotCount() > 1 ? target.referrers_ : 0});
  target.referrers_ = static_cast<std::uint32_t>(entries_.size());
}

void Referrers::noteTargets(const Element& element) noexcept {
  element.getMetaClass().note(element, *this);
}

/// Grows with the references; what chains have lost is collected before it outweighs them.
bool Referrers::hasRoom() noexcept {
  if (entries_.size() >= std::max(4 * all_.size() + 1024, bound_)) rebuild();
  if (entries_.size() < entries_.capacity()) return true;
  try {
    entries_.reserve(std::max<std::size_t>(1024, 2 * entries_.size()));
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void Referrers::rebuild() noexcept {
  bound_ = SIZE_MAX;
  newest_ = UINT32_MAX;
  entries_.clear();
  for (Element* element : all_)
    if (element) element->forgetReferrers();
  for (const Element* element : all_)
    if (element) noteTargets(*element);
  bound_ = 2 * entries_.size();
  newest_ = UINT32_MAX;  // what comes next may be a link of another place
}

void Referrers::rebuildAll() noexcept {
  popular_ = UINT32_MAX;
  rebuild();
}

void Referrers::renumber() noexcept {
  newest_ = UINT32_MAX;
  for (Entry& entry : entries_) {
    const Element* const element = entry.place < all_.size() ? all_[entry.place] : nullptr;
    entry.place = element ? element->index_ : UINT32_MAX;
  }
}

}  // namespace orb::zero
