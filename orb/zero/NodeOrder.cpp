#include <orb/zero/NodeOrder.h>

#include <boost/intrusive/rbtree_algorithms.hpp>

namespace orb::zero {

/// Links as the nodes of a red-black tree.
struct NodeOrder::Link::Traits {
  using node = Link;
  using node_ptr = Link*;
  using const_node_ptr = const Link*;
  using color = std::uintptr_t;

  static Link* get_left(const Link* link) { return link->left_; }
  static void set_left(Link* link, Link* left) { link->left_ = left; }
  static Link* get_right(const Link* link) { return link->right_; }
  static void set_right(Link* link, Link* right) { link->right_ = right; }
  static Link* get_parent(const Link* link) { return link->up(); }
  static void set_parent(Link* link, Link* parent) {
    link->up_ = reinterpret_cast<std::uintptr_t>(parent) | get_color(link);
  }
  static color get_color(const Link* link) { return link->up_ & Link::red; }
  static void set_color(Link* link, color color) {
    link->up_ = reinterpret_cast<std::uintptr_t>(link->up()) | color;
  }
  static color black() { return 0; }
  static color red() { return Link::red; }

  using Tree = boost::intrusive::rbtree_algorithms<Traits>;
};

NodeOrder::Link* NodeOrder::Link::nextInTree() noexcept { return Traits::Tree::next_node(this); }

void NodeOrder::plant() noexcept {
  Link* next = first();
  Link::Traits::Tree::init_header(&end_);
  while (next != &end_) {
    Link& node = *std::exchange(next, next->left_);
    Link::Traits::Tree::push_back(&end_, &node);
  }
}

/// Frees the least one of what is left again and again: what is on the left of a node comes above.
void NodeOrder::uproot() noexcept {
  Link* last = &end_;
  for (Link* node = root(); node;) {
    if (Link* const left = node->left_) {
      node->left_ = std::exchange(left->right_, node);
      node = left;
    } else {
      Link* const greater = node->right_;
      chain(*last, *node);
      last = std::exchange(node, greater);
    }
  }
  chain(*last, end_);
}

void NodeOrder::insertIntoTree(Link& node, Link& before) noexcept {
  Link::Traits::Tree::insert_before(&end_, &before, &node);
}

void NodeOrder::removeFromTree(Link& node) noexcept {
  Link::Traits::Tree::erase(&end_, &node);
  if (!root()) reset();
}

}  // namespace orb::zero
