#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

#include <orb/zero/Collection.h>
#include <orb/zero/Exception.h>

namespace orb::zero {

/// Owned elements in an order of their own, each at most once. Places count from 0. The end is a
/// sentinel, for range `for` and `std::ranges`.
///
/// Every child knows its place in the storage, so that finding and removing it takes no search. A
/// removal leaves a gap there, and a place that is asked for by its number is searched from the one
/// asked for last, or from the front. When searches have taken as many steps as there are places,
/// the gaps are closed, unless a change may still be taken back.
template <class E>
class OwnedSequence : public Collection {
 public:
  using Entry = E;
  class Iterator;
  using Collection::Collection;

  Iterator begin() const noexcept { return Iterator(*this, first()); }
  std::default_sentinel_t end() const noexcept { return {}; }
  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return content_.size() - gaps_; }
  bool contains(const ModelElement& element) const { return element && owns(*element.get()); }
  /// Raises "InvalidValue" for a place that does not exist.
  E operator[](std::size_t place) const { return E(content_[locate(place)]); }

  /// Appends the element; one that has another owner moves, one that is held already stays where it
  /// is. Refuses, in this order, an empty or destroyed element ("CannotAddNonExistentObject"), one
  /// of another class ("CannotAddIncompatibleTypes") or model
  /// ("CannotCreateCrossModelAssociation").
  void add(const ModelElement& element) {
    owner().checkNoProxy();
    owner().template checkInsertion<E>(element);
    ModelElement::Impl& child = *element.get();
    if (owns(child)) return;
    Unit unit(owner());
    move(child, [&] { append(child); });
    unit.commit();
  }
  /// Puts the element in the place of another, which becomes a top-level element; replacing one by
  /// itself does nothing. Refuses what `add` refuses, and an element that is held at another place
  /// ("CannotAddSecondObject").
  void set(std::size_t place, const ModelElement& element) {
    owner().checkNoProxy();
    owner().template checkInsertion<E>(element);
    const auto order = static_cast<std::uint32_t>(locate(place));
    if (content_[order] == element) return;
    if (contains(element)) raise("CannotAddSecondObject");
    ModelElement::Impl& child = *element.get();  // the handle may be the slot that it leaves
    Unit unit(owner());
    move(child, [&] { replaceAt(order, child); });
    unit.commit();
  }
  /// Takes the element out, if it is held; it becomes a top-level element.
  void remove(const ModelElement& element) {
    owner().checkNoProxy();
    if (element.get()) release(*element.get());
  }
  void clear() {
    owner().checkNoProxy();
    Unit unit(owner());
    for (std::size_t order = content_.size(); order-- > 0;)
      if (order < content_.size() && content_[order].get()) release(*content_[order].get());
    unit.commit();
  }

  // What the owner's property does with it (see `meta::PropertyServices`).
  void targets(meta::TargetVisitor& visitor) const {
    for (const Slot<E>& child : content_)
      if (child.get()) visitor.visit(*child.get());
  }
  void release(ModelElement::Impl& child) {
    if (!owns(child)) return;
    Unit unit(owner());
    perform(Presence{*this, child.order(), {}});
    unit.commit();
  }
  void replace(const ModelElement::Impl& child, ModelElement::Impl& other) {
    if (!owns(child)) return;
    Unit unit(owner());
    move(other, [&] { replaceAt(child.order(), other); });
    unit.commit();
  }
  template <class F>
  void forEach(F visit) const {
    for (const E& child : *this) visit(child);
  }
  /// What is compared of it (see `Storage::isUnchanged`).
  std::vector<const ModelElement::Impl*> snapshot() const {
    std::vector<const ModelElement::Impl*> children;
    for (const E& child : *this) children.push_back(child.get());
    return children;
  }
  void link(bool links) noexcept {
    for (std::uint32_t order = 0; order < content_.size(); ++order)
      if (content_[order].get()) links ? linkAt(order) : disown(*content_[order].get());
  }
  void reset() noexcept {
    link(false);
    content_.clear();
    gaps_ = 0;
    first_ = 0;
    found_ = {};
  }
  void forget() noexcept {
    for (Slot<E>& child : content_) child.forget();
  }

 private:
  /// A child that came or went.
  struct Presence {
    void exchange(bool links) noexcept {
      if (child.get()) {
        sequence.restore(order, std::move(child), links);
      } else {
        child = sequence.withdraw(order, links);
      }
    }
    OwnedSequence& sequence;
    std::uint32_t order;
    Slot<E> child;
  };
  /// A child in the place of another.
  struct Replacement {
    void exchange(bool links) noexcept {
      if (links) sequence.disown(*sequence.content_[order].get());
      std::swap(sequence.content_[order], other);
      if (links) sequence.linkAt(order);
    }
    OwnedSequence& sequence;
    std::uint32_t order;
    Slot<E> other;
  };

  void append(ModelElement::Impl& child) {
    if (content_.size() == content_.capacity()) {
      if (!owner().model().transactions().keepsRecords()) compact();
      content_.reserve(std::max<std::size_t>(4, 2 * content_.size()));
    }
    const auto order = static_cast<std::uint32_t>(content_.size());
    if (isRecorded()) log(Presence{*this, order, {}});
    content_.emplace_back(&child);
    linkAt(order);
  }
  void replaceAt(std::uint32_t order, ModelElement::Impl& child) {
    perform(Replacement{*this, order, Slot<E>(&child)});
  }
  /// The vector never gives memory back, so that a child can return without any.
  void restore(std::uint32_t order, Slot<E> child, bool links) noexcept {
    for (; content_.size() <= order; ++gaps_) content_.emplace_back();
    content_[order] = std::move(child);
    --gaps_;
    first_ = std::min<std::size_t>(first_, order);
    if (order < found_.order) ++found_.place;
    if (links) linkAt(order);
  }
  Slot<E> withdraw(std::uint32_t order, bool links) noexcept {
    Slot<E> child = std::move(content_[order]);
    if (links) disown(*child.get());
    ++gaps_;
    for (; !content_.empty() && !content_.back().get(); --gaps_) content_.pop_back();
    first_ = std::min(first_, content_.size());
    if (order < found_.order) --found_.place;
    if (found_.order > content_.size()) found_ = {};
    return child;
  }
  /// Where in the storage the child at this place is.
  std::size_t locate(std::size_t place) const {
    if (place >= size()) raise("InvalidValue");
    if (gaps_ == 0) return place;
    if (place == 0) return first();
    const Found start = place < found_.place / 2 ? Found{0, first()} : found_;
    auto [before, order] = start;
    while (before > place) before -= hasChild(--order) ? 1 : 0;
    while (before < place || !hasChild(order)) before += hasChild(order++) ? 1 : 0;
    found_ = {place, order};
    steps_ += order < start.order ? start.order - order : order - start.order;
    if (steps_ < content_.size() || owner().model().transactions().keepsRecords()) return order;
    compact();
    return place;
  }
  bool hasChild(std::size_t order) const noexcept { return content_[order].get() != nullptr; }
  /// Where in the storage the first child at this order or behind it is, or else the end.
  std::size_t next(std::size_t order) const noexcept {
    while (order < content_.size() && !hasChild(order)) ++order;
    return order;
  }
  std::size_t first() const noexcept {
    const std::size_t order = next(first_);
    if (first_ != order) first_ = order;  // who only reads writes nothing
    return order;
  }
  /// Links the child at this place of the storage to its owner and place.
  void linkAt(std::uint32_t order) const noexcept {
    ModelElement::Impl& child = *content_[order].get();
    adopt(child);
    child.setOrder(order);
  }
  /// Closes the gaps, while no record names places of the storage.
  void compact() const {
    if (gaps_ == 0) return;
    std::erase_if(content_, [](const Slot<E>& child) { return !child.get(); });
    for (std::uint32_t order = 0; order < content_.size(); ++order)
      if (owns(*content_[order].get()))  // not so what went back from a builder
        content_[order].get()->setOrder(order);
    gaps_ = 0;
    steps_ = 0;
    first_ = 0;
    found_ = {};
  }

  /// A place of the storage, and how many children are before it.
  struct Found {
    std::size_t place = 0, order = 0;
  };
  mutable std::vector<Slot<E>> content_;
  mutable std::size_t gaps_ = 0;
  mutable std::size_t steps_ = 0;  // of searches since gaps were closed
  mutable std::size_t first_ = 0;  // no child is before it
  mutable Found found_;            // by the last search
};

/// Goes over the children, past the gaps. While one is in use, children may be removed, but none
/// asked for by its place.
template <class E>
class OwnedSequence<E>::Iterator {
 public:
  using value_type = E;
  using difference_type = std::ptrdiff_t;

  const E& operator*() const noexcept { return sequence_->content_[place_]; }
  const E* operator->() const noexcept { return &**this; }
  Iterator& operator++() noexcept {
    place_ = sequence_->next(place_ + 1);
    return *this;
  }
  void operator++(int) noexcept { ++*this; }
  bool operator==(std::default_sentinel_t) const noexcept {
    return place_ >= sequence_->content_.size();
  }

 private:
  friend OwnedSequence;
  Iterator(const OwnedSequence& sequence, std::size_t place)
      : sequence_(&sequence), place_(place) {}

  const OwnedSequence* sequence_;
  std::size_t place_;
};

}  // namespace orb::zero
