#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <orb/zero/Collection.h>
#include <orb/zero/CollisionResolution.h>
#include <orb/zero/Exception.h>
#include <orb/zero/KeyedNodes.h>

namespace orb::zero {

/// Owned elements under unique keys, in ascending order of the keys (texts compare byte by byte).
/// The key of an element is a property of its own, read by the key function.
template <class K, class E>
class ElementMap : public Collection {
 public:
  using Entry = E;
  using KeyFunction = const K& (*)(const ModelElement::Impl&);

  ElementMap(ModelElement::Impl& element, KeyFunction key, Descriptor descriptor) noexcept
      : Collection(element, descriptor), nodes_(element), key_(key) {}

  /// The element under the key, or an empty handle.
  E operator[](const K& key) const {
    const Node* const node = nodes_.find(key);
    return node ? E(node->second) : E();
  }
  /// The same without a reference of its own: null when there is none.
  typename E::Impl* find(const K& key) const {
    const Node* const node = nodes_.find(key);
    return node ? static_cast<typename E::Impl*>(node->second.get()) : nullptr;
  }
  bool contains(const K& key) const { return !nodes_.isBehindAll(key) && nodes_.find(key); }
  /// Entries are pairs of a key and a handle, given by value (`const auto& [key, element]`). What
  /// comes or goes elsewhere leaves iterators alone.
  auto begin() const noexcept { return nodes_.begin(); }
  auto end() const noexcept { return nodes_.end(); }
  bool empty() const noexcept { return nodes_.empty(); }
  std::size_t size() const noexcept { return nodes_.size(); }

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
    Place place = nodes_.lowerBound(key);
    if (isAt(place, key) && !owns(*place->second.get()))
      nodes_.remove((place++).node());  // in a builder, from which a rollback has taken it
    if (isAt(place, key)) {
      if (place->second == element || resolution == CollisionResolution::Keep) return;
      if (resolution == CollisionResolution::Report) raise("UniquenessConstraint");
      Transaction unit(owner().getModel());
      take(place.node());
      insert(element);
      return unit.commit();
    }
    Unit unit(owner());
    if (child.container())
      move(child, [&] { put(child, nodes_.lowerBound(key)); });
    else
      put(child, place);
    unit.commit();
  }
  void add(const ModelElement& element) { insert(element); }
  /// Stores a new element of the owner's model, which has no owner yet and a key behind all others.
  /// For units of many: nothing is checked, and the change is no unit of its own.
  void append(ModelElement::Impl& child) { put(child, end()); }

  /// Takes out what is stored under the key, if anything is; it becomes a top-level element.
  void erase(const K& key) {
    owner().checkNoProxy();
    if (Node* const node = nodes_.find(key)) take(*node);
  }
  void clear() {
    owner().checkNoProxy();
    Unit unit(owner());
    while (!empty()) take(nodes_.back());
    unit.commit();
  }

  /// Stores the child under another key, which is to become its own. Raises
  /// "UniquenessConstraint" when there is another element under that key. Does nothing for a child
  /// that is not stored, as in a builder after a rollback.
  void rekey(const ModelElement::Impl& child, const K& key) {
    if (Node* const node = nodes_.find(key)) {
      if (node->second.get() == &child) return;
      if (owns(*node->second.get())) raise("UniquenessConstraint");
      nodes_.remove(*node);  // as in `insert`
    }
    if (Node* const node = nodeOf(child)) perform(Renaming{*this, *node, key});
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
    for (const auto& [key, child] : nodes_) visitor.visit(*child.get());
  }
  void release(const ModelElement::Impl& child) {
    if (owns(child)) take(*nodeOf(child));
  }
  void replace(const ModelElement::Impl& child, ModelElement::Impl& other) {
    if (!owns(child)) return;
    take(*nodeOf(child));
    add(ModelElement(&other));
  }
  template <class F>
  void forEach(F visit) const {
    for (const auto& [key, child] : nodes_) visit(child);
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
    for (const auto& [key, child] : nodes_) links ? adopt(*child.get()) : disown(*child.get());
  }
  void reset() noexcept {
    link(false);
    nodes_.clear();
  }
  void forget() noexcept {
    for (auto place = begin(); place != end(); ++place) place.node().second.forget();
  }

 private:
  using Nodes = KeyedNodes<K, E>;
  using Node = typename Nodes::Node;
  using Place = typename Nodes::Iterator;
  /// A node that came or went. It goes back and forth, so that neither way needs memory.
  struct Presence {
    void exchange(bool links) noexcept {
      if (loose) {
        if (links) map.adopt(*node.second.get());
        map.nodes_.insert(std::move(loose));
      } else {
        loose = map.nodes_.remove(node);
        if (links) map.disown(*node.second.get());
      }
    }
    ElementMap& map;
    Node& node;
    typename Nodes::Loose loose;  // the node, while it is not in the map
  };
  /// A node that gets another key.
  struct Renaming {
    void exchange(bool) noexcept {
      auto loose = map.nodes_.remove(node);
      std::swap(node.first, other);
      map.nodes_.insert(std::move(loose));
    }
    ElementMap& map;
    Node& node;
    K other;
  };

  bool isAt(Place place, const K& key) const { return place != end() && place->first == key; }
  /// Null for a child that is not stored.
  Node* nodeOf(const ModelElement::Impl& child) const {
    Node* const node = nodes_.find(key_(child));
    if (node && node->second.get() == &child) return node;
    const auto found = std::find_if(
        begin(), end(), [&](const auto& entry) { return entry.second.get() == &child; });
    return found == end() ? nullptr : &found.node();  // its key was basically set
  }
  /// At the place of its key.
  void put(ModelElement::Impl& child, Place place) {
    auto loose = nodes_.make(key_(child), child);
    if (isRecorded()) log(Presence{*this, *loose, nullptr});
    nodes_.insert(std::move(loose), place);
    adopt(child);
  }
  void take(Node& node) {
    Unit unit(owner());
    perform(Presence{*this, node, nullptr});
    unit.commit();
  }

  Nodes nodes_;
  KeyFunction key_;
};

}  // namespace orb::zero
