#include <orb/zero/ModelElement.h>  // before the guard: on the way there it may bring this class

#ifndef ORB_ZERO_REFERRERS_H
#define ORB_ZERO_REFERRERS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orb::zero {

/// Tells which elements of a model may refer to an element: a chain of places in the creation order
/// per target, of which the target has the head. A new reference adds to the chain; one that goes
/// leaves it, so what is named has to be looked at. A target is untracked when its chain may not be
/// all: very many refer to it, or a slot was written by its address.
class ORB_ZERO_API Referrers {
 public:
  using Element = ModelElement::Impl;
  using Elements = std::vector<Element*>;

  explicit Referrers(const Elements& all) noexcept : all_(all) {}

  /// The element at this place has come to refer to the target.
  void note(Element& target, std::uint32_t place) noexcept {
    if (target.isUntracked()) return;
    if (place != newest_) {
      newest_ = place;
      older_ = entries_.size();
    }
    if (target.referrers_ <= older_) add(target, place);  // or else it has told of it just now
  }
  /// All that the element refers to.
  void noteTargets(const Element& element) noexcept;
  /// Shows the places of the elements that may refer to the target, which must be tracked.
  template <class Visit>
  void visit(const Element& target, Visit visit) const {
    for (std::uint32_t at = target.referrers_; at != 0; at = entries_[at - 1].next)
      if (entries_[at - 1].place < all_.size()) visit(entries_[at - 1].place);
  }
  /// Starts anew from what the model holds now; tracks every target but the popular ones.
  void rebuild() noexcept;
  /// The same, with the popular ones, and follows them from now on.
  void rebuildAll() noexcept;
  /// Told when the elements have got new places and before the order is closed up.
  void renumber() noexcept;

 private:
  void add(Element& target, std::uint32_t place) noexcept;
  bool hasRoom() noexcept;

  struct Entry {
    std::uint32_t place;
    std::uint32_t next;  // of the same target, from 1; 0 for none
  };
  const Elements& all_;
  std::vector<Entry> entries_;
  std::uint32_t newest_ = UINT32_MAX;  // the place that has told last
  std::size_t older_ = 0;              // entries before those that it has told since
  std::uint32_t popular_ = 64;         // references, from which on they are not followed
  std::size_t bound_ = 0;              // entries, of which it may have so many in any case
};

}  // namespace orb::zero

#endif  // ORB_ZERO_REFERRERS_H
