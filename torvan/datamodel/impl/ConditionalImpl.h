#pragma once

#include <torvan/datamodel/Conditional.h>
#include <torvan/datamodel/Expression.h>
#include <torvan/datamodel/Term.h>
#include <torvan/datamodel/impl/ExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Conditional::Impl : public orb::zero::ImplOf<Conditional> {
  orb::zero::Slot<Expression> ctrlExpr_;
  orb::zero::Slot<Term> operandTrue_;
  orb::zero::Slot<Term> operandFalse_;

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.Conditional",
      "b3ec7982-851f-3e02-a28a-d4d383c1eae4",
      Row{&Impl::ctrlExpr_, "ctrlExpr", 2, "0195034d-93b6-3031-b51c-d9e8d0c9166f",
          Ordered | Unique | NoMutator},
      Row{&Impl::operandTrue_, "operandTrue", 3, "d9444139-d193-3ee1-a06b-75d705c84bf3",
          Ordered | Unique | NoMutator},
      Row{&Impl::operandFalse_, "operandFalse", 4, "007f5bed-b225-3d82-a122-87ff6216ad4e",
          Ordered | Unique | NoMutator}};

  const Expression& getCtrlExpr() const noexcept { return ctrlExpr_; }
  bool hasCtrlExpr() const noexcept { return has<&Impl::ctrlExpr_>(); }
  void basicSetCtrlExpr(const Expression& value) { basicSet<&Impl::ctrlExpr_>(value); }
  void setCtrlExpr(const Expression& value) { set<&Impl::ctrlExpr_>(value); }

  const Term& getOperandTrue() const noexcept { return operandTrue_; }
  bool hasOperandTrue() const noexcept { return has<&Impl::operandTrue_>(); }
  void basicSetOperandTrue(const Term& value) { basicSet<&Impl::operandTrue_>(value); }
  void setOperandTrue(const Term& value) { set<&Impl::operandTrue_>(value); }

  const Term& getOperandFalse() const noexcept { return operandFalse_; }
  bool hasOperandFalse() const noexcept { return has<&Impl::operandFalse_>(); }
  void basicSetOperandFalse(const Term& value) { basicSet<&Impl::operandFalse_>(value); }
  void setOperandFalse(const Term& value) { set<&Impl::operandFalse_>(value); }
};

}  // namespace torvan::datamodel
