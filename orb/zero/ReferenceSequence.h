#pragma once

#include <algorithm>
#include <span>

#include <boost/iterator/transform_iterator.hpp>

#include <orb/zero/Sequence.h>

namespace orb::zero {

/// An ordered collection of references to elements that it does not own; one element may stand in
/// several places. Additions and replacements refuse, in this order, an empty or destroyed element
/// ("CannotAddNonExistentObject"), one of another class ("CannotAddIncompatibleTypes") and one of
/// another model ("CannotCreateCrossModelAssociation"). An entry whose element is destroyed goes.
template <class E>
class ReferenceSequence : public Sequence<Slot<E>> {
 public:
  using Entry = E;
  using Sequence<Slot<E>>::Sequence;

  // Entries are handed out as handles: a copy of a slot would hold nothing.
  const E& operator[](std::size_t place) const { return Sequence<Slot<E>>::operator[](place); }
  auto begin() const noexcept { return Iterator(slots().data()); }
  auto end() const noexcept { return Iterator(slots().data() + this->size()); }
  /// For going through them by address.
  std::span<const Slot<E>> slots() const noexcept { return this->content(); }

  void add(const ModelElement& element) { insert(this->size(), element); }
  void insert(std::size_t place, const ModelElement& element) {
    check(element);
    this->insertItem(place, Slot<E>(element.get()));
  }
  void set(std::size_t place, const ModelElement& element) {
    check(element);
    this->setItem(place, Slot<E>(element.get()));
  }
  /// Keeps a place for an operand that is missing: an entry with an empty handle.
  void addEmpty() { this->insertItem(this->size(), Slot<E>()); }
  /// Sets the entry at the place, or adds one after the last; null makes it an empty one.
  void put(std::size_t place, ModelElement::Impl* target) {
    if (target) check(ModelElement(target));
    if (place == this->size())
      this->insertItem(place, Slot<E>(target));
    else
      this->setItem(place, Slot<E>(target));
  }
  bool contains(const ModelElement& element) const {
    return std::find(this->begin(), this->end(), element) != this->end();
  }

  // What the owner's property does with it (see `meta::PropertyServices`).
  void targets(meta::TargetVisitor& visitor) const {
    for (const E& entry : *this)
      if (entry.get()) visitor.visit(*entry.get());
  }
  void release(const ModelElement::Impl& target) {
    const auto isTarget = [&](const E& entry) { return entry.get() == &target; };
    const auto first = std::find_if(this->begin(), this->end(), isTarget);
    if (first == this->end()) return;
    if (std::find_if(first + 1, this->end(), isTarget) == this->end())
      this->erase(static_cast<std::size_t>(first - this->begin()));
    else
      this->eraseIf(isTarget);
  }
  void replace(const ModelElement::Impl& target, ModelElement::Impl& other) {
    for (std::size_t place = 0; place < this->size(); ++place)
      if ((*this)[place].get() == &target) set(place, ModelElement(&other));
  }
  template <class F>
  void forEach(F visit) const {
    for (const E& entry : *this) visit(entry);
  }
  /// What is compared of it (see `Storage::isUnchanged`).
  std::vector<const ModelElement::Impl*> snapshot() const {
    std::vector<const ModelElement::Impl*> targets;
    for (const E& entry : *this) targets.push_back(entry.get());
    return targets;
  }
  void reset() noexcept { this->content().clear(); }
  void forget() noexcept {
    for (Slot<E>& entry : this->content()) entry.forget();
  }

 private:
  struct AsHandle {
    const E& operator()(const Slot<E>& slot) const noexcept { return slot; }
  };
  using Iterator = boost::transform_iterator<AsHandle, const Slot<E>*, const E&, E>;

  void check(const ModelElement& element) const {
    this->owner().checkNoProxy();
    this->owner().template checkInsertion<E>(element);
  }
};

}  // namespace orb::zero
