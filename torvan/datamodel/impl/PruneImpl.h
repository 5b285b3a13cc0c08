#pragma once

#include <string>

#include <torvan/datamodel/Expression.h>
#include <torvan/datamodel/Prune.h>
#include <torvan/datamodel/impl/ExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Prune::Impl : public orb::zero::ImplOf<Prune> {
  orb::zero::Slot<Expression> expr_;
  orb::zero::PrimitiveSequence<std::string> field_{*this, &Prune::field};

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.Prune", "95eccb4d-c0c5-3d8e-8428-e02c83ae216f",
      Row{&Impl::expr_, "expr", 2, "97dcc41b-d7dc-30e3-91f9-9614c64b84e1",
          Ordered | Unique | NoMutator},
      Row{&Impl::field_, "field", 3, "99befb74-f31b-3e60-8f40-0d55b33d2c2e", Ordered | NoMutator}};

  const Expression& getExpr() const noexcept { return expr_; }
  bool hasExpr() const noexcept { return has<&Impl::expr_>(); }
  void basicSetExpr(const Expression& value) { basicSet<&Impl::expr_>(value); }
  void setExpr(const Expression& value) { set<&Impl::expr_>(value); }

  orb::zero::PrimitiveSequence<std::string>& getField() noexcept { return field_; }
  const orb::zero::PrimitiveSequence<std::string>& getField() const noexcept { return field_; }
  bool hasField() const noexcept { return !field_.empty(); }
};

}  // namespace torvan::datamodel
