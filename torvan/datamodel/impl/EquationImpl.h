#pragma once

#include <orb/zero/ImplOf.h>
#include <torvan/datamodel/Equation.h>
#include <torvan/datamodel/LExpression.h>
#include <torvan/datamodel/Term.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Equation::Impl : public orb::zero::ImplOf<Equation> {
  orb::zero::Slot<LExpression> lhs_;
  orb::zero::Slot<Term> rhs_;

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.Equation",
      "68fd5782-f572-3d28-81df-e21ec45698eb",
      Row{&Impl::lhs_, "lhs", 1, "97978b35-0356-3860-bbd0-9622d9112353", Ordered | Unique},
      Row{&Impl::rhs_, "rhs", 2, "74a3fec6-c008-31e6-8917-71a5e7cfa0b0", Ordered | Unique},
      Op{&Equation::print, "print", Defined},
      Op{&Equation::getLhsVariable, "getLhsVariable", Defined},
      Op{&Equation::getRhsVariables, "getRhsVariables", Defined}};

  const LExpression& getLhs() const noexcept { return lhs_; }
  bool hasLhs() const noexcept { return has<&Impl::lhs_>(); }
  void basicSetLhs(const LExpression& value) { basicSet<&Impl::lhs_>(value); }
  void setLhs(const LExpression& value) { set<&Impl::lhs_>(value); }

  const Term& getRhs() const noexcept { return rhs_; }
  bool hasRhs() const noexcept { return has<&Impl::rhs_>(); }
  void basicSetRhs(const Term& value) { basicSet<&Impl::rhs_>(value); }
  void setRhs(const Term& value) { set<&Impl::rhs_>(value); }

  std::string print() const;
  Variable getLhsVariable() const;
  std::vector<Variable> getRhsVariables() const;
};

}  // namespace torvan::datamodel
