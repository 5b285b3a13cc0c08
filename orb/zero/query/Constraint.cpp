#include <orb/zero/query/Constraint.h>

namespace orb::zero::query {
namespace {

class Both final : public Constraint::Node {
 public:
  Both(const Constraint& a, const Constraint& b) : a_(a), b_(b) {}

  void select(Constraint::Elements& elements) const override {
    a_.select(elements);
    b_.select(elements);
  }
  void check(const meta::ClassInfo& type) const override {
    a_.check(type);
    b_.check(type);
  }

 private:
  Constraint a_, b_;
};

class Not final : public Constraint::Node {
 public:
  explicit Not(const Constraint& a) : a_(a) {}

  void select(Constraint::Elements& elements) const override {
    Constraint::Elements dropped = elements;
    a_.select(dropped);
    auto next = dropped.begin();  // in the order of `elements`
    std::erase_if(elements, [&](const ModelElement::Impl* element) {
      if (next == dropped.end() || *next != element) return false;
      ++next;
      return true;
    });
  }
  void check(const meta::ClassInfo& type) const override { a_.check(type); }

 private:
  Constraint a_;
};

}  // namespace

Constraint::Node::~Node() = default;

Constraint operator&&(const Constraint& a, const Constraint& b) {
  return Constraint(std::make_shared<Both>(a, b));
}
Constraint operator||(const Constraint& a, const Constraint& b) { return !(!a && !b); }
Constraint operator!(const Constraint& a) { return Constraint(std::make_shared<Not>(a)); }

}  // namespace orb::zero::query
