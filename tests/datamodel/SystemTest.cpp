#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using SystemTest = SessionTest;

TEST_F(SystemTest, SystemExistsFromTheStart) {
  const auto builder = session.createSystemBuilder();
  EXPECT_EQ(model.size(), 1U);
  const System system = builder->build();
  EXPECT_FALSE(system->hasEquations());
  const Equation first = builder->addEquation(variable("x"), {});
  const Equation second = builder->addEquation({}, sets(1)->getTop());
  EXPECT_TRUE(builder->build() == system);
  EXPECT_TRUE(system->getEquations()[0] == first && system->getEquations()[1] == second);
  EXPECT_TRUE(first->hasLhs() && !first->hasRhs() && !second->hasLhs() && second->hasRhs());
  EXPECT_TRUE(first->getContainer() == system);
}

TEST_F(SystemTest, BuilderOutlivesItsSession) {
  std::unique_ptr<SystemBuilder> builder;
  {
    const Session other;
    builder = other.createSystemBuilder();
  }
  EXPECT_TRUE(builder->addEquation({}, {}));
  const System system = builder->build();
  builder.reset();
  EXPECT_EQ(system->getEquations().size(), 1U);
}

TEST_F(SystemTest, EquationTellsItsVariables) {
  const auto builder = session.createSystemBuilder();
  const Variable x = variable("x"), y = variable("y"), z = variable("z");
  const LExpression place =
      expressions.createIndexRef(expressions.createStructRef(x, "unknown"), 2, 3);
  const Equation equation = builder->addEquation(place, expressions.createJoin({y, z, y}));
  EXPECT_TRUE(equation.getLhsVariable() == x);
  EXPECT_EQ(equation.getRhsVariables(), (std::vector{y, z, y}));
  EXPECT_EQ(equation.print(), "IndexRef(StructRef(x,'unknown'),2 : 3) = Join(y,z,y)");

  const Equation empty = builder->addEquation(expressions.createStructRef({}, "a"), {});
  EXPECT_FALSE(empty.getLhsVariable());
  EXPECT_TRUE(empty.getRhsVariables().empty());
  EXPECT_FALSE(builder->addEquation({}, x).getLhsVariable());
}

}  // namespace
}  // namespace torvan::datamodel
