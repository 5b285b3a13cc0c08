#pragma once

#include <torvan/datamodel/Expression.h>
#include <torvan/datamodel/impl/TermImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Expression::Impl : public orb::zero::ImplOf<Expression> {
 public:
  static constexpr Table table{Instances::Abstract, "torvan.datamodel.Expression",
                               "44f547bb-b142-3091-89a0-1cd1d31c7308"};
};

}  // namespace torvan::datamodel
