#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

class ExpressionTest : public SessionTest {
 protected:
  PowerSetType p = sets(3), q = sets(4);
  ArrayType array = types.createArrayType("A", p, 5);
  StructType record = types.createStructType("S", {"a", "b"}, {p, array});
  Variable x = variable("x", p), y = variable("y", q), r = variable("r", record);
};

TEST_F(ExpressionTest, JoinAndMeetHaveTheTypeOfTheFirst) {
  const Join join = expressions.createJoin({x, y, q->getTop(), x});
  EXPECT_TRUE(join->getType() == p);
  ASSERT_EQ(join->getOperands().size(), 4U);
  EXPECT_TRUE(join->getOperands()[2] == q->getTop() && join->getOperands()[3] == x);
  EXPECT_TRUE(expressions.createMeet({q->getTop(), x})->getType() == q);
  EXPECT_FALSE(expressions.createMeet({variable("u"), x})->hasType());
  EXPECT_FALSE(expressions.createJoin({{}, x})->hasType());
}

TEST_F(ExpressionTest, StructRefHasTheTypeOfTheField) {
  const StructRef ref = expressions.createStructRef(r, "b");
  EXPECT_TRUE(ref->getType() == array && ref->getExpr() == r);
  EXPECT_EQ(ref->getField(), "b");
  EXPECT_FALSE(expressions.createStructRef(r, "unknown")->hasType());
  EXPECT_FALSE(expressions.createStructRef(variable("u"), "a")->hasType());
  const auto before = snapshot(model);
  EXPECT_RAISES(expressions.createStructRef(x, "a"), castFailure<StructType>());
  EXPECT_EQ(snapshot(model), before);
}

TEST_F(ExpressionTest, IndexRefHasTheElementTypeOfAnArray) {
  const StructRef table = expressions.createStructRef(r, "b");
  const IndexRef single = expressions.createIndexRef(table, 3);
  EXPECT_TRUE(single->getType() == p);
  EXPECT_EQ(single->getEndIndex(), 3);
  EXPECT_TRUE(expressions.createIndexRef(table, 2, 5)->getType() == p);
  EXPECT_EQ(expressions.createIndexRef(table, 2, 0)->getEndIndex(), 0);
  EXPECT_TRUE(expressions.createIndexRef(y, 4, 9)->getType() == q);
  EXPECT_FALSE(expressions.createIndexRef(variable("u"), 9, 4)->hasType());
}

TEST_F(ExpressionTest, ConditionalAndPrune) {
  const Conditional choice = expressions.createConditional(r, y, p->getTop());
  EXPECT_TRUE(choice->getType() == q && choice->getCtrlExpr() == r);
  EXPECT_TRUE(choice->getOperandTrue() == y && choice->getOperandFalse() == p->getTop());
  const Prune prune = expressions.createPrune(r, {"y", "x"});
  EXPECT_FALSE(prune->hasType());
  EXPECT_TRUE(prune->getExpr() == r);
  EXPECT_EQ(prune->getField()[0] + prune->getField()[1], "yx");
}

TEST_F(ExpressionTest, SystemExistsFromTheStart) {
  const auto builder = session.createSystemBuilder();
  const System system = builder->build();
  EXPECT_FALSE(system->hasEquations());
  const Equation first = builder->addEquation(x, {}), second = builder->addEquation({}, y);
  EXPECT_TRUE(builder->build() == system && first->getContainer() == system);
  EXPECT_TRUE(system->getEquations()[0] == first && system->getEquations()[1] == second);
  EXPECT_TRUE(first->getLhs() == x && !first->hasRhs());
  EXPECT_TRUE(!second->hasLhs() && second->getRhs() == y);
}

TEST_F(ExpressionTest, BuilderOutlivesItsSession) {
  const std::unique_ptr<SystemBuilder> builder = Session().createSystemBuilder();
  EXPECT_TRUE(builder->addEquation({}, {}));
  EXPECT_EQ(builder->build()->getEquations().size(), 1U);
}

TEST_F(ExpressionTest, EquationTellsItsVariables) {
  const auto builder = session.createSystemBuilder();
  const StructRef part = expressions.createStructRef(r, "b"),
                  none = expressions.createStructRef({}, "b");
  const Equation equation =
      builder->addEquation(expressions.createIndexRef(part, 2), expressions.createJoin({y, x, y}));
  EXPECT_TRUE(equation.getLhsVariable() == r);
  EXPECT_EQ(equation.getRhsVariables(), (std::vector{y, x, y}));
  const Equation empty = builder->addEquation(none, {});
  EXPECT_FALSE(empty.getLhsVariable() || builder->addEquation({}, x).getLhsVariable());
  EXPECT_TRUE(empty.getRhsVariables().empty());
}

TEST_F(ExpressionTest, OperandsOfAnotherModelAreRefusedAndNothingIsMade) {
  Session foreign;
  const LatticeType alienType = foreign.typeFactory()->createPowerSetType("P", 1);
  const Variable alien = foreign.expressionFactory()->createVariable({}, "x");
  const std::vector<Term> last{x, {}, alien}, first{alienType->getTop(), x};
  const std::function<void()> attempts[] = {[&] { expressions.createVariable(alienType, "v"); },
                                            [&] { expressions.createJoin(last); },
                                            [&] { expressions.createMeet(first); },
                                            [&] { expressions.createStructRef(alien, "a"); },
                                            [&] { expressions.createIndexRef(alien, 1); },
                                            [&] { expressions.createConditional(alien, x, x); },
                                            [&] { expressions.createConditional(x, x, alien); },
                                            [&] { expressions.createPrune(alien, {"a"}); }};
  const auto before = snapshot(model);
  for (const auto& attempt : attempts)
    EXPECT_EQ(failureOf(attempt), "CannotCreateCrossModelAssociation");
  EXPECT_EQ(snapshot(model), before);
}

}  // namespace
}  // namespace torvan::datamodel
