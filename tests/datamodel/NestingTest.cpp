#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using CycleTest = SessionTest;

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
