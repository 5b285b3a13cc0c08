#pragma once

#include <torvan/datamodel/LExpression.h>
#include <torvan/datamodel/impl/ExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API LExpression::Impl : public orb::zero::ImplOf<LExpression> {
 public:
  static constexpr Table table{Instances::Abstract, "torvan.datamodel.LExpression",
                               "389dd4f2-e975-3de4-8c24-c9fe2d07a88c"};
};

}  // namespace torvan::datamodel
