#pragma once

#include <cstdint>
#include <utility>

#include <orb/zero/Api.h>

namespace orb::zero {

/// Nodes in an order that those who put them there know. They are a chain, where a node comes and
/// goes at once, until `plant` makes them a tree, in which a place is found by looking at few of
/// them. None of it needs memory, and nodes stay where they are.
class ORB_ZERO_API NodeOrder {
 public:
  /// What a node derives from.
  class ORB_ZERO_API Link {
   public:
    Link* next() noexcept { return up_ != 0 ? nextInTree() : left_; }
    // In a tree: what is below on the side of those before, and of those behind; null for nothing.
    Link* left() noexcept { return left_; }
    Link* right() noexcept { return right_; }

   private:
    friend class NodeOrder;
    struct Traits;

    Link* nextInTree() noexcept;

    static constexpr std::uintptr_t red = 1;
    Link* up() const noexcept { return reinterpret_cast<Link*>(up_ & ~red); }

    // In a chain the next one is on the left and the one before on the right. So the end has the
    // first one on its left and the last one on its right, as in a tree.
    Link *left_ = nullptr, *right_ = nullptr;
    std::uintptr_t up_ = 0;  // and the colour; 0 in a chain
  };

  NodeOrder() noexcept { reset(); }
  NodeOrder(const NodeOrder&) = delete;
  NodeOrder& operator=(const NodeOrder&) = delete;

  // All of them, with the end on either side.
  Link* first() noexcept { return end_.left_; }
  Link* last() noexcept { return end_.right_; }
  Link* end() noexcept { return &end_; }

  bool isTree() const noexcept { return end_.up_ != 0; }
  void plant() noexcept;
  Link* root() noexcept { return end_.up(); }

  void insert(Link& node, Link& before) noexcept {
    if (isTree()) return insertIntoTree(node, before);
    chain(*before.right_, node);
    chain(node, before);
    node.up_ = 0;
  }
  void remove(Link& node) noexcept {
    if (isTree()) return removeFromTree(node);
    chain(*node.right_, *node.left_);
  }
  /// Takes out all, each shown to `visit`, which may end it.
  template <class Visit>
  void clear(Visit visit) noexcept {
    if (isTree()) uproot();
    for (Link* node = first(); node != &end_;) visit(*std::exchange(node, node->left_));
    reset();
  }

 private:
  static void chain(Link& node, Link& next) noexcept {
    node.left_ = &next;
    next.right_ = &node;
  }
  void reset() noexcept {
    chain(end_, end_);
    end_.up_ = 0;
  }
  void uproot() noexcept;
  void insertIntoTree(Link& node, Link& before) noexcept;
  void removeFromTree(Link& node) noexcept;

  Link end_;
};

}  // namespace orb::zero
