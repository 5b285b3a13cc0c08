#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <utility>

#include <orb/zero/KeyIndex.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/NodeOrder.h>
#include <orb/zero/PoolAllocator.h>
#include <orb/zero/Slot.h>

namespace orb::zero {

/// Slots of elements under unique keys, in ascending order of the keys, in nodes that stay where
/// they are and lie in the pool of an element's model. Only making a node needs memory.
template <class K, class E>
class KeyedNodes {
  using Link = NodeOrder::Link;

 public:
  struct Node : Link, std::pair<K, Slot<E>> {
    using std::pair<K, Slot<E>>::pair;
  };
  struct Disposer {
    void operator()(Node* node) const noexcept { nodes->dispose(*node); }
    KeyedNodes* nodes;
  };
  /// One that is not among them.
  using Loose = std::unique_ptr<Node, Disposer>;

  /// Hands out entries as handles: a copy of a slot would hold nothing.
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = std::pair<K, E>;
    using difference_type = std::ptrdiff_t;
    using reference = std::pair<const K&, const E&>;
    struct pointer {
      const reference* operator->() const noexcept { return &entry; }
      reference entry;
    };

    Iterator() noexcept = default;
    explicit Iterator(Link* link) noexcept : link_(link) {}
    reference operator*() const noexcept { return {node().first, node().second}; }
    pointer operator->() const noexcept { return {**this}; }
    Iterator& operator++() noexcept { return link_ = link_->next(), *this; }
    Iterator operator++(int) noexcept { return Iterator(std::exchange(link_, link_->next())); }
    friend bool operator==(Iterator, Iterator) noexcept = default;

    Node& node() const noexcept { return nodeOf(link_); }

   private:
    friend class KeyedNodes;

    Link* link_ = nullptr;
  };

  explicit KeyedNodes(ModelElement::Impl& element) noexcept : element_(element) {}
  ~KeyedNodes() { clear(); }

  Iterator begin() const noexcept { return Iterator(order_.first()); }
  Iterator end() const noexcept { return Iterator(order_.end()); }
  bool empty() const noexcept { return size_ == 0; }
  std::size_t size() const noexcept { return size_; }
  /// The last one, while there is one.
  Node& back() const noexcept { return nodeOf(order_.last()); }

  bool isBehindAll(const K& key) const { return empty() || back().first < key; }
  /// Null when there is none.
  Node* find(const K& key) const {
    if (index_.isMade()) [[likely]]
      return index_.find(key);
    const Iterator found = lowerBound(key);
    if (index_.isDue(size_)) {
      index_.make(size_);
      for (Iterator node = begin(); node != end(); ++node) index_.insert(node.node());
    }
    return found != end() && found->first == key ? &found.node() : nullptr;
  }
  /// Where the key is or would be; told at once when that is at either end.
  Iterator lowerBound(const K& key) const {
    if (isBehindAll(key)) return end();
    const auto isBefore = [&](const Link* node) { return nodeOf(node).first < key; };
    Link* bound = order_.first();
    if (!isBefore(bound)) return Iterator(bound);
    if (!order_.isTree() && size_ <= few) {
      while (isBefore(bound)) bound = bound->next();
      return Iterator(bound);
    }
    if (!order_.isTree()) order_.plant();
    for (Link* node = order_.root(); node;) {
      if (isBefore(node)) {
        node = node->right();
      } else {
        bound = node;
        node = node->left();
      }
    }
    return Iterator(bound);
  }
  Loose make(const K& key, ModelElement::Impl& child) {
    PoolAllocator<Node> pool(element_);
    Node* const memory = pool.allocate(1);
    try {
      return Loose(new (memory) Node(key, Slot<E>(&child)), {this});
    } catch (...) {
      pool.deallocate(memory, 1);
      throw;
    }
  }
  /// Before the place, which is that of its key.
  void insert(Loose node, Iterator place) noexcept {
    order_.insert(*node, *place.link_);
    index_.insert(*node.release());
    ++size_;
  }
  void insert(Loose node) noexcept {
    const Iterator place = lowerBound(node->first);
    insert(std::move(node), place);
  }
  Loose remove(Node& node) noexcept {
    index_.erase(node);
    order_.remove(node);
    --size_;
    return Loose(&node, {this});
  }
  void clear() noexcept {
    index_.drop();
    order_.clear([this](Link& node) { dispose(nodeOf(&node)); });
    size_ = 0;
  }

 private:
  static constexpr std::size_t few = 16;  // found by going through them

  static Node& nodeOf(Link* link) noexcept { return static_cast<Node&>(*link); }
  static const Node& nodeOf(const Link* link) noexcept { return static_cast<const Node&>(*link); }
  void dispose(Node& node) noexcept {
    node.~Node();
    PoolAllocator<Node>(element_).deallocate(&node, 1);
  }

  ModelElement::Impl& element_;
  std::size_t size_ = 0;
  mutable NodeOrder order_;
  mutable KeyIndex<Node> index_;
};

}  // namespace orb::zero
