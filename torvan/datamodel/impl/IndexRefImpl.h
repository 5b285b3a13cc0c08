#pragma once

#include <cstdint>

#include <torvan/datamodel/IndexRef.h>
#include <torvan/datamodel/LExpression.h>
#include <torvan/datamodel/impl/LExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API IndexRef::Impl : public orb::zero::ImplOf<IndexRef> {
  orb::zero::Slot<LExpression> expr_;
  std::uint16_t startIndex_ = 0;
  std::uint16_t endIndex_ = 0;

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.IndexRef",
      "542be353-f6e9-3655-81af-7d81e9b45d72",
      Row{&Impl::expr_, "expr", 2, "8bbcfc28-aa39-3e0b-80c4-3b9707c2e7dc",
          Ordered | Unique | NoMutator},
      Row{&Impl::startIndex_, "startIndex", 3, "f43e33b6-ade8-370a-9788-d6f8fcec6b76",
          Ordered | Unique | NoMutator | NoDefault},
      Row{&Impl::endIndex_, "endIndex", 4, "33faf7c5-3945-3f1f-837f-a59b858086c5",
          Ordered | Unique | NoMutator | NoDefault}};

  const LExpression& getExpr() const noexcept { return expr_; }
  bool hasExpr() const noexcept { return has<&Impl::expr_>(); }
  void basicSetExpr(const LExpression& value) { basicSet<&Impl::expr_>(value); }
  void setExpr(const LExpression& value) { set<&Impl::expr_>(value); }

  std::uint16_t getStartIndex() const noexcept { return startIndex_; }
  bool hasStartIndex() const noexcept { return has<&Impl::startIndex_>(); }
  void basicSetStartIndex(std::uint16_t value) { basicSet<&Impl::startIndex_>(value); }
  void setStartIndex(std::uint16_t value) { set<&Impl::startIndex_>(value); }

  std::uint16_t getEndIndex() const noexcept { return endIndex_; }
  bool hasEndIndex() const noexcept { return has<&Impl::endIndex_>(); }
  void basicSetEndIndex(std::uint16_t value) { basicSet<&Impl::endIndex_>(value); }
  void setEndIndex(std::uint16_t value) { set<&Impl::endIndex_>(value); }
};

}  // namespace torvan::datamodel
