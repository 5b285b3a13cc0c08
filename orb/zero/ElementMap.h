#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include <orb/zero/Collection.h>
#include <orb/zero/CollisionResolution.h>
#include <orb/zero/Exception.h>
#include <orb/zero/KeyIndex.h>
#include <orb/zero/PoolAllocator.h>

namespace orb::zero {

/// Owned elements under unique keys, in ascending order of the keys (texts compare byte by byte).
/// The key of an element is a property of its own, read by the key function.
template <class K, class E>
class ElementMap : public Collection {
 public:
  using Entry = E;
  using Child = std::pair<const K, Slot<E>>;
  using Content = std::map<K, Slot<E>, std::less<>, PoolAllocator<Child>>;
  using KeyFunction = const K& (*)(const ModelElement::Impl&);

  ElementMap(ModelElement::Impl& element, KeyFunction key, Descriptor descriptor) noexcept
      : Collection(element, descriptor), content_(PoolAllocator<Child>(element)), key_(key) {}

  /// The element under the key, or an empty handle.
  E operator[](const K& key) const {
    const E* const child = entry(key);
    return child ? *child : E();
  }
  /// The same without a reference of its own: null when there is none.
  typename E::Impl* find(const K& key) const {
    const E* const child = entry(key);
    return child ? static_cast<typename E::Impl*>(child->get()) : nullptr;
  }
  bool contains(const K& key) const {
    if (empty() || content_.rbegin()->first < key) return false;  // at once for what comes last
    return find(key) != nullptr;
  }
  auto begin() const noexcept { return content_.begin(); }
  auto end() const noexcept { return content_.end(); }
  bool empty() const noexcept { return content_.empty(); }
  std::size_t size() const noexcept { return content_.size(); }

  /// Stores the element under its key; one that has another owner moves. Refuses, in this order, an
  /// empty or destroyed element ("CannotAddNonExistentObject"), one of another class
  /// ("CannotAddIncompatibleTypes") or model ("CannotCreateCrossModelAssociation"), and, with
  /// `Report`, a second one under a key ("UniquenessConstraint"). Inserting the element that is
  /// stored already does nothing.
  void insert(const ModelElement& element,
              CollisionResolution resolution = CollisionResolution::Report) {
    owner().checkNoProxy();
    owner().template checkInsertion<E>(element);
    ModelElement::Impl& child = *element.get();
    const K& key = key_(child);
    Place place = placeOf(key);
    if (place != content_.end() && place->first == key && !owns(*place->second.get())) {
      extract(place);  // in a builder, from which a rollback has taken it
      place = placeOf(key);
    }
    if (place != content_.end() && place->first == key) {
      if (place->second == element || resolution == CollisionResolution::Keep) return;
      if (resolution == CollisionResolution::Report) raise("UniquenessConstraint");
      Transaction unit(owner().getModel());
      take(place);
      insert(element);
      return unit.commit();
    }
    Unit unit(owner());
    if (child.container())
      move(child, [&] { put(placeOf(key), key, child); });
    else
      put(place, key, child);
    unit.commit();
  }
  void add(const ModelElement& element) { insert(element); }
  /// Stores a new element of the owner's model, which has no owner yet and a key behind all others.
  /// For units of many: nothing is checked, and the change is no unit of its own.
  void append(ModelElement::Impl& child) { put(content_.end(), key_(child), child); }

  /// Takes out what is stored under the key, if anything is; it becomes a top-level element.
  void erase(const K& key) {
    owner().checkNoProxy();
    if (const auto found = content_.find(key); found != content_.end()) take(found);
  }
  void clear() {
    owner().checkNoProxy();
    Unit unit(owner());
    while (!empty()) take(content_.begin());
    unit.commit();
  }

  /// Stores the child under another key, which is to become its own. Raises
  /// "UniquenessConstraint" when there is another element under that key. Does nothing for a child
  /// that is not stored, as in a builder after a rollback.
  void rekey(const ModelElement::Impl& child, const K& key) {
    if (const auto found = content_.find(key); found != content_.end()) {
      if (found->second.get() == &child) return;
      raise("UniquenessConstraint");
    }
    const Place place = storedAt(child);
    if (place == content_.end()) return;
    perform(Renaming{*this, place->first, key, key});
  }

  /// Raises what inserting the elements into an empty map would.
  void checkAll(const std::vector<E>& elements) const {
    Collection::checkAll(elements);
    std::vector<const ModelElement::Impl*> byKey;
    for (const E& element : elements) byKey.push_back(element.get());
    std::sort(byKey.begin(), byKey.end(), [this](auto* a, auto* b) { return key_(*a) < key_(*b); });
    const auto collide = [this](auto* a, auto* b) { return a != b && key_(*a) == key_(*b); };
    if (std::adjacent_find(byKey.begin(), byKey.end(), collide) != byKey.end())
      raise("UniquenessConstraint");
  }

  // What the owner's property does with it (see `meta::PropertyServices`).
  void targets(meta::TargetVisitor& visitor) const {
    for (const auto& [key, child] : content_) visitor.visit(*child.get());
  }
  void release(const ModelElement::Impl& child) {
    if (owns(child)) take(storedAt(child));
  }
  void replace(const ModelElement::Impl& child, ModelElement::Impl& other) {
    if (!owns(child)) return;
    take(storedAt(child));
    add(ModelElement(&other));
  }
  template <class F>
  void forEach(F visit) const {
    for (const auto& [key, child] : content_) visit(child);
  }
  /// What is compared of it (see `Storage::isUnchanged`).
  struct Snapshot {
    friend bool operator==(const Snapshot& a, const Snapshot& b) {
      return a.size == b.size && a.size <= 1 && a.key == b.key && a.child == b.child;
    }
    std::size_t size;
    K key;
    const ModelElement::Impl* child;
  };
  Snapshot snapshot() const {
    if (empty()) return {0, K(), nullptr};
    return {size(), begin()->first, begin()->second.get()};
  }
  void link(bool links) noexcept {
    for (const auto& [key, child] : content_) links ? adopt(*child.get()) : disown(*child.get());
  }
  void reset() noexcept {
    link(false);
    content_.clear();
    index_.drop();
  }
  void forget() noexcept {
    for (auto& [key, child] : content_) child.forget();
  }

 private:
  using Place = typename Content::iterator;
  /// An entry that came or went. The node goes back and forth, so that neither way needs memory.
  struct Presence {
    void exchange(bool links) noexcept {
      if (node) {
        if (links) map.adopt(*node.mapped().get());
        map.index_.insert(*map.content_.insert(std::move(node)).position);
      } else {
        node = map.extract(map.content_.find(key));
        if (links) map.disown(*node.mapped().get());
      }
    }
    ElementMap& map;
    K key;
    typename Content::node_type node;
  };
  /// An entry that is stored under another key.
  struct Renaming {
    void exchange(bool) noexcept {
      auto node = map.extract(map.content_.find(now));
      std::swap(node.key(), spare);
      std::swap(now, other);
      map.index_.insert(*map.content_.insert(std::move(node)).position);
    }
    ElementMap& map;
    K now, other;
    K spare;  // equal to `other`
  };

  /// Where the key is or would be; at once for one that comes last.
  Place placeOf(const K& key) {
    if (content_.empty() || content_.rbegin()->first < key) return content_.end();
    return content_.lower_bound(key);
  }
  /// Where the child is, or the end.
  Place storedAt(const ModelElement::Impl& child) {
    const auto isChild = [&](const auto& entry) { return entry.second.get() == &child; };
    const Place found = content_.find(key_(child));
    if (found != content_.end() && isChild(*found)) return found;
    return std::find_if(content_.begin(), content_.end(), isChild);  // its key was basically set
  }
  void put(Place before, const K& key, ModelElement::Impl& child) {
    if (isRecorded()) {  // all that can fail comes first
      Content staged(content_.get_allocator());
      staged.emplace(key, &child);
      log(Presence{*this, key, {}});
      index_.insert(*content_.insert(before, staged.extract(staged.begin())));
    } else {
      index_.insert(*content_.emplace_hint(before, key, &child));
    }
    adopt(child);
  }
  void take(Place place) {
    Unit unit(owner());
    ModelElement::Impl& child = *place->second.get();
    if (isRecorded()) {
      Presence& presence = log(Presence{*this, place->first, {}});
      presence.node = extract(place);
    } else {
      extract(place);
    }
    disown(child);
    unit.commit();
  }

  typename Content::node_type extract(Place place) noexcept {
    index_.erase(*place);
    return content_.extract(place);
  }
  const E* entry(const K& key) const {
    if (!index_.isMade()) [[unlikely]] {
      const auto found = content_.find(key);
      if (index_.isDue(size())) index_.make(content_);
      return found == content_.end() ? nullptr : &found->second;
    }
    const auto* const found = index_.find(key);
    return found ? &found->second : nullptr;
  }

  mutable Content content_;
  mutable KeyIndex<typename Content::value_type> index_;
  KeyFunction key_;
};

}  // namespace orb::zero
