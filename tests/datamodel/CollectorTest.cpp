#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class CollectorTest : public SessionTest {
 protected:
  static std::string collect(const ModelElement& element) {
    RefVariableCollector collector;
    collector.dispatch(element);
    std::string names;
    for (const Variable& found : collector.getVariables()) names += found->getName();
    return names;
  }

  const Variable c = variable("c"), x = variable("x"), y = variable("y"), z = variable("z");
};

TEST_F(CollectorTest, ListsVariablesFromLeftToRight) {
  EXPECT_EQ(collect(expressions.createJoin(
                {x, expressions.createConditional(c, y, x), expressions.createStructRef(z, "f")})),
            "xcyxz");
  EXPECT_EQ(collect(expressions.createMeet({x, x})), "xx");
  EXPECT_EQ(collect(expressions.createPrune(expressions.createMeet({y, x}), {"z"})), "yx");
  EXPECT_EQ(collect(expressions.createIndexRef(expressions.createStructRef(z, "a"), 1, 2)), "z");
  EXPECT_EQ(collect(x), "x");
}

TEST_F(CollectorTest, SkipsWhatIsEmptyOrNoExpression) {
  const LatticeValue value = sets(2)->getTop();
  EXPECT_EQ(collect(expressions.createJoin({value, {}, value})), "");
  EXPECT_EQ(collect(expressions.createConditional({}, value, x)), "x");
  EXPECT_EQ(collect(expressions.createStructRef({}, "f")), "");
  EXPECT_EQ(collect({}) + collect(session.createSystemBuilder()->addEquation(x, y)), "");
}

}  // namespace
}  // namespace torvan::datamodel
