#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

constexpr int depth = 1'000'000;

class DepthTest : public SessionTest {
 protected:
  /// Kinds of nesting in turn.
  Expression wrap(const Expression& inner, int level) {
    switch (level % 4) {
      case 0:
        return expressions.createJoin({inner});
      case 1:
        return expressions.createMeet({inner, {}});
      case 2:
        return expressions.createPrune(inner, {"a"});
      default:
        return expressions.createConditional(x, inner, x);
    }
  }
  Expression chain() {
    Expression top = x;
    for (int level = 0; level < depth; ++level) top = wrap(top, level);
    return top;
  }

  Variable x = variable("x");
};

TEST_F(DepthTest, ExpressionsPrintAndCollect) {
  const Equation equation = session.createSystemBuilder()->addEquation(x, chain());
  const std::string text = equation.print();
  EXPECT_EQ(text.substr(0, 43), "x = Conditional(ctrlExpr: x,prune(Meet(Join");
  EXPECT_EQ(text.substr(text.size() - 9), ",[a ]),x)");
  EXPECT_EQ(equation.getRhsVariables().size(), 1U + depth / 4 * 2);
}

TEST_F(DepthTest, DestructionAndRollbackDoNotRecurse) {
  const std::size_t before = model.size();
  const Variable kept = x;
  {
    const Transaction transaction(model);
    const Expression top = chain();
    x->destroy();
    EXPECT_TRUE(top);
    EXPECT_EQ(model.size(), before - 1 + depth);
  }
  EXPECT_TRUE(kept);
  EXPECT_EQ(model.size(), before);
}

TEST_F(DepthTest, ReclaimOfNestedValuesDoesNotRecurse) {
  LatticeValue value = sets(1)->getTop();
  const std::size_t before = model.size();
  for (int level = 0; level < depth / 10; ++level) value = values.createStruct({}, {"a"}, {value});
  EXPECT_EQ(PrettyPrinter().dispatch(value).substr(0, 22), "Struct(a : Struct(a : ");
  value = LatticeValue();
  EXPECT_EQ(model.reclaim(), static_cast<std::size_t>(depth) / 5);
  EXPECT_EQ(model.size(), before);
}

}  // namespace
}  // namespace torvan::datamodel
