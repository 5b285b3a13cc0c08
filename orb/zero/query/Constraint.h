#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <orb/zero/ModelElement.h>

namespace orb::zero::query {

/// A condition on elements, put together from the accessors of a class's `Constrainables` by `&&`,
/// `||` and `!`. It never changes, is cheap to copy, and may serve any number of queries. The
/// elements that it names are kept as by a handle.
class ORB_ZERO_API Constraint {
 public:
  using Elements = std::vector<ModelElement::Impl*>;

  /// A part of a condition. It is asked about many elements at once, so that the loop over them is
  /// compiled together with the test.
  class ORB_ZERO_API Node {
   public:
    virtual ~Node();
    /// Keeps, in their order, the elements that fulfil the condition; all are of a class that
    /// `check` lets pass.
    virtual void select(Elements& elements) const = 0;
    /// Raises "InvalidValue" when the condition is about a property that the class lacks.
    virtual void check(const meta::ClassInfo& type) const = 0;
  };

  explicit Constraint(std::shared_ptr<const Node> node) noexcept : node_(std::move(node)) {}

  void select(Elements& elements) const { node_->select(elements); }
  void check(const meta::ClassInfo& type) const { node_->check(type); }

  /// The second part is tested only where the first one leaves it open.
  friend ORB_ZERO_API Constraint operator&&(const Constraint& a, const Constraint& b);
  friend ORB_ZERO_API Constraint operator||(const Constraint& a, const Constraint& b);
  friend ORB_ZERO_API Constraint operator!(const Constraint& a);

 private:
  std::shared_ptr<const Node> node_;
};

}  // namespace orb::zero::query
