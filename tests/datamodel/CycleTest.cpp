#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class CycleTest : public SessionTest {};

TEST_F(CycleTest, ValuesThatContainThemselvesAreRefused) {
  const ArrayType type = types.createArrayType("A", sets(2), 1);
  Array array = values.createArray(type, {1}, {type->getTop()});
  (*array->getValues().begin()).second->setValue(array);
  const StructType records = types.createStructType("R", {"a"}, {type});
  Struct record = values.createStruct(records, {"a"}, {records->getTop()});
  (*record->getValues().begin()).second->setValue(record);
  const std::vector<std::string> path(5000, "a");

  const std::size_t before = model.size();
  for (const LatticeValue& value : {LatticeValue(array), LatticeValue(record)}) {
    EXPECT_RAISES(value.eq(value.clone()), "CyclicValue");
    EXPECT_RAISES(value.le(value), "CyclicValue");
    EXPECT_RAISES(value.eq(value), "CyclicValue");
    EXPECT_RAISES(value.join(value), "CyclicValue");
    EXPECT_RAISES(value.meet(value), "CyclicValue");
    EXPECT_RAISES(PrettyPrinter().dispatch(value), "CyclicValue");
  }
  EXPECT_RAISES(record.prune({}), "CyclicValue");
  EXPECT_RAISES(record.prune(path), "CyclicValue");
  EXPECT_EQ(model.size(), before);
  EXPECT_TRUE(sets(2)->getTop().eq(sets(2)->getTop().clone()));  // depths are as before
}

TEST_F(CycleTest, TypesThatContainEachOtherAreRefused) {
  const auto typeOfItself = [&] {
    const StructType type = types.createStructType("S", {"f"}, {sets(1)});
    (*type->getFields().begin()).second->setElemType(type);
    return type;
  };
  const StructType a = typeOfItself(), b = typeOfItself();
  EXPECT_TRUE(a.isCompatible(a));
  EXPECT_RAISES(a.isCompatible(b), "CyclicValue");
}

TEST_F(CycleTest, ExpressionsThatContainThemselvesAreRefused) {
  const Variable x = variable("x");
  Join join = expressions.createJoin({x});
  const Meet meet = expressions.createMeet({x, join});
  const Equation equation = session.createSystemBuilder()->addEquation(x, meet);
  join->getOperands().add(meet);
  EXPECT_RAISES(equation.print(), "CyclicValue");
  EXPECT_RAISES(equation.getRhsVariables(), "CyclicValue");
  EXPECT_EQ(PrettyPrinter::excerpt(equation, 14), "x = Meet(x,Joi...");

  RefVariableCollector collector;
  EXPECT_RAISES(collector.dispatch(meet), "CyclicValue");
  join->getOperands().erase(1);
  collector.takeVariables();
  collector.dispatch(meet);  // goes on as if nothing had happened
  EXPECT_EQ(collector.getVariables().size(), 2U);
}

TEST_F(CycleTest, WhatTheWalkDoesNotEnterMayContainItself) {
  const Variable x = variable("x");
  const Struct record = make<Struct>();
  record->getValues().insert(field("f", record));
  std::vector<Term> operands(200, x);
  operands.emplace_back(record);
  const Term term = expressions.createJoin(operands);
  const Equation equation = session.createSystemBuilder()->addEquation(x, term);
  EXPECT_EQ(equation.getRhsVariables().size(), 200U);
  EXPECT_RAISES(equation.print(), "CyclicValue");
}

TEST_F(CycleTest, WhatOnlyComesOftenIsPrinted) {
  Term term = variable("x");
  for (int level = 0; level < 12; ++level) term = expressions.createJoin({term, term});
  const Equation equation = session.createSystemBuilder()->addEquation(variable("y"), term);
  EXPECT_EQ(equation.getRhsVariables().size(), 4096U);
  EXPECT_EQ(equation.print().size(), 4 + 4095 * std::string("Join(,)").size() + 4096);
  EXPECT_EQ(PrettyPrinter::excerpt(variable("ää"), 3), "ä...");
}

}  // namespace
}  // namespace torvan::datamodel
