#pragma once

#include <string>
#include <utility>

#include <torvan/datamodel/LExpression.h>
#include <torvan/datamodel/StructRef.h>
#include <torvan/datamodel/impl/LExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API StructRef::Impl : public orb::zero::ImplOf<StructRef> {
  orb::zero::Slot<LExpression> expr_;
  std::string field_;

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.StructRef", "0f777b59-5599-3706-a179-62547e0ced0e",
      Row{&Impl::expr_, "expr", 2, "9b04b840-7a0c-39ae-b94f-c5305f8ae591",
          Ordered | Unique | NoMutator},
      Row{&Impl::field_, "field", 3, "cf616786-88bb-306a-8817-46a9b3170c49",
          Ordered | Unique | NoMutator | NoDefault}};

  const LExpression& getExpr() const noexcept { return expr_; }
  bool hasExpr() const noexcept { return has<&Impl::expr_>(); }
  void basicSetExpr(const LExpression& value) { basicSet<&Impl::expr_>(value); }
  void setExpr(const LExpression& value) { set<&Impl::expr_>(value); }

  const std::string& getField() const noexcept { return field_; }
  bool hasField() const noexcept { return has<&Impl::field_>(); }
  void basicSetField(std::string value) { basicSet<&Impl::field_>(std::move(value)); }
  void setField(std::string value) { set<&Impl::field_>(std::move(value)); }
};

}  // namespace torvan::datamodel
