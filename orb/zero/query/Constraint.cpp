#include <orb/zero/query/Constraint.h>

#include <boost/container/small_vector.hpp>

namespace orb::zero::query {
namespace {

class Compound;
using NodePointer = std::shared_ptr<const Constraint::Node>;

/// A test, or a compound of parts; which of them is asked once.
struct Part {
  explicit Part(NodePointer from) noexcept;

  NodePointer node;
  const Compound* compound = nullptr;
};

/// `a && b`, or `!a` when there is no b. Conditions that are put together in a loop are as deep as
/// they are long, so nothing here goes down them by recursion.
class Compound final : public Constraint::Node {
 public:
  explicit Compound(NodePointer a, NodePointer b = nullptr) noexcept
      : a_(std::move(a)), b_(std::move(b)) {}
  Compound(const Compound&) = delete;
  Compound& operator=(const Compound&) = delete;
  /// Parts that nobody else holds end one after the other.
  ~Compound() override {
    boost::container::small_vector<Part, 2> ending;
    const auto take = [&](const Compound& from) {
      for (Part* part : {&from.a_, &from.b_})
        if (part->compound && part->node.use_count() == 1) ending.push_back(std::move(*part));
    };
    take(*this);
    while (!ending.empty()) {
      const Part part = std::move(ending.back());
      ending.pop_back();
      take(*part.compound);
    }
  }

  /// What is negated; null when nothing is.
  NodePointer negated() const noexcept { return b_.node ? nullptr : a_.node; }

  void select(Constraint::Elements& elements) const override {
    Stack todo;  // null: what is left of the elements is to be dropped from those there were
    boost::container::small_vector<Constraint::Elements, 2> before;
    const auto open = [&](const Compound& compound) {
      if (!compound.b_.node) before.push_back(elements);
      todo.push_back(compound.b_.node ? &compound.b_ : nullptr);
      todo.push_back(&compound.a_);
    };
    open(*this);
    while (!todo.empty()) {
      const Part* const part = todo.back();
      todo.pop_back();
      if (!part) {
        drop(elements, before.back());
        elements.swap(before.back());
        before.pop_back();
      } else if (part->compound) {
        open(*part->compound);
      } else {
        part->node->select(elements);
      }
    }
  }

  void check(const meta::ClassInfo& type) const override {
    for (Stack todo{&b_, &a_}; !todo.empty();) {
      const Part& part = *todo.back();
      todo.pop_back();
      if (part.compound)
        todo.insert(todo.end(), {&part.compound->b_, &part.compound->a_});
      else if (part.node)
        part.node->check(type);
    }
  }

 private:
  using Stack = boost::container::small_vector<const Part*, 16>;

  /// Takes out the dropped ones, which are in the same order.
  static void drop(const Constraint::Elements& dropped, Constraint::Elements& elements) {
    auto next = dropped.begin();
    std::erase_if(elements, [&](const ModelElement::Impl* element) {
      if (next == dropped.end() || *next != element) return false;
      ++next;
      return true;
    });
  }

  mutable Part a_, b_;  // taken apart at the end
};

Part::Part(NodePointer from) noexcept
    : node(std::move(from)), compound(dynamic_cast<const Compound*>(node.get())) {}

}  // namespace

Constraint::Node::~Node() = default;

Constraint operator&&(const Constraint& a, const Constraint& b) {
  return Constraint(std::make_shared<Compound>(a.node_, b.node_));
}
Constraint operator||(const Constraint& a, const Constraint& b) { return !(!a && !b); }
Constraint operator!(const Constraint& a) {
  const auto* const compound = dynamic_cast<const Compound*>(a.node_.get());
  if (compound && compound->negated()) return Constraint(compound->negated());
  return Constraint(std::make_shared<Compound>(a.node_));
}

}  // namespace orb::zero::query
