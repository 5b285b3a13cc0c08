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

/// Owned elements in an order of their own, each at most once. Places count from 0.
///
/// Every child knows its place in the storage, so that finding and removing it takes no search. A
/// removal leaves a gap there; gaps are closed when a place is asked for by its number.
template <class E>
class OwnedSequence : public Collection {
 public:
  using Entry = E;
  class Iterator;
  using Collection::Collection;

  Iterator begin() const noexcept { return Iterator(*this, 0).settle(); }
  std::default_sentinel_t end() const noexcept { return {}; }
  bool empty() const noexcept { return size() == 0; }
  std::size_t size() const noexcept { return content_.size() - gaps_; }
  bool contains(const ModelElement& element) const { return element && owns(*element.get()); }
  /// Raises "InvalidValue" for a place that does not exist.
  E operator[](std::size_t place) const {
    if (place >= size()) raise("InvalidValue");
    compact();
    return E(content_[place]);
  }

  /// Appends the element; one that has another owner moves, one that is held already stays where it
  /// is. Refuses, in this order, an empty or destroyed element ("CannotAddNonExistentObject"), one
  /// of another class ("CannotAddIncompatibleTypes") or model
  /// ("CannotCreateCrossModelAssociation").
  void add(const ModelElement& element) {
    owner().checkInsertion(element, E::metaClass());
    ModelElement::Impl& child = *element.get();
    if (owns(child)) return;
    move(child, [&] { append(child); });
  }
  /// Puts the element in the place of another, which becomes a top-level element; replacing one by
  /// itself does nothing. Refuses what `add` refuses, and an element that is held at another place
  /// ("CannotAddSecondObject").
  void set(std::size_t place, const ModelElement& element) {
    owner().checkInsertion(element, E::metaClass());
    const E before = (*this)[place];
    if (before == element) return;
    if (contains(element)) raise("CannotAddSecondObject");
    move(*element.get(), [&] { replace(place, *element.get()); });
  }
  /// Takes the element out, if it is held; it becomes a top-level element.
  void remove(const ModelElement& element) {
    if (element.get()) release(*element.get());
  }

  // What the owner's property does with it (see `meta::PropertyServices`).
  void targets(meta::TargetVisitor& visitor) const {
    for (const Slot<E>& child : content_)
      if (child.get()) visitor.visit(*child.get());
  }
  void release(ModelElement::Impl& child) {
    if (!owns(child)) return;
    const std::uint32_t order = child.order();
    if (isRecorded()) {
      log([this, order, kept = Slot<E>(&child)]() mutable {
        content_[order] = std::move(kept);
        --gaps_;
        settle(order);
      });
    }
    disown(child);
    content_[order].clear();
    ++gaps_;
  }
  void reset() noexcept {
    for (const Slot<E>& child : content_)
      if (child.get()) disown(*child.get());
    content_.clear();
    gaps_ = 0;
  }
  void forget() noexcept {
    for (Slot<E>& child : content_) child.forget();
  }

 private:
  void append(ModelElement::Impl& child) {
    if (content_.size() == content_.capacity()) {
      compact();
      content_.reserve(std::max<std::size_t>(4, 2 * content_.size()));
    }
    if (isRecorded()) {
      log([this] {
        disown(*content_.back().get());
        content_.pop_back();
      });
    }
    content_.emplace_back(&child);
    settle(static_cast<std::uint32_t>(content_.size() - 1));
  }
  void replace(std::size_t place, ModelElement::Impl& child) {
    Slot<E> before = content_[place];
    if (isRecorded()) {
      log([this, place, before]() mutable {
        disown(*content_[place].get());
        content_[place] = std::move(before);
        settle(static_cast<std::uint32_t>(place));
      });
    }
    disown(*before.get());
    content_[place] = Slot<E>(&child);
    settle(static_cast<std::uint32_t>(place));
  }
  /// Links the child at this place of the storage to its owner and place.
  void settle(std::uint32_t order) const noexcept {
    ModelElement::Impl& child = *content_[order].get();
    adopt(child);
    child.setOrder(order);
  }
  /// Closes the gaps; the log keeps the storage as it was, for the places that it names.
  void compact() const {
    if (gaps_ == 0) return;
    std::vector<Slot<E>> closed;
    closed.reserve(size());
    for (const Slot<E>& child : content_)
      if (child.get()) closed.push_back(child);
    if (isRecorded())
      log([this, before = content_, gaps = gaps_]() mutable {
        content_.swap(before);
        gaps_ = gaps;
        renumber();
      });
    content_.swap(closed);
    gaps_ = 0;
    renumber();
  }
  void renumber() const noexcept {
    for (std::uint32_t order = 0; order < content_.size(); ++order)
      if (content_[order].get()) content_[order].get()->setOrder(order);
  }

  mutable std::vector<Slot<E>> content_;
  mutable std::size_t gaps_ = 0;
};

/// Goes over the children, past the gaps. While one is in use, children may be removed.
template <class E>
class OwnedSequence<E>::Iterator {
 public:
  using value_type = E;
  using difference_type = std::ptrdiff_t;

  const E& operator*() const noexcept { return sequence_->content_[place_]; }
  const E* operator->() const noexcept { return &**this; }
  Iterator& operator++() noexcept {
    ++place_;
    return settle();
  }
  void operator++(int) noexcept { ++*this; }
  bool operator==(std::default_sentinel_t) const noexcept {
    return place_ >= sequence_->content_.size();
  }

 private:
  friend OwnedSequence;
  Iterator(const OwnedSequence& sequence, std::size_t place)
      : sequence_(&sequence), place_(place) {}
  Iterator& settle() noexcept {
    while (place_ < sequence_->content_.size() && !sequence_->content_[place_].get()) ++place_;
    return *this;
  }

  const OwnedSequence* sequence_;
  std::size_t place_;
};

}  // namespace orb::zero
