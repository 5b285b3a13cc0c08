#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class PrinterTest : public SessionTest {
 protected:
  static std::string print(const ModelElement& element) {
    return PrettyPrinter().dispatch(element);
  }

  const Variable x = variable("x"), y = variable("y");
};

TEST_F(PrinterTest, WritesAnEquation) {
  const PowerSetType p3 = sets(3), p4 = sets(4);
  const Variable v = variable("v", types.createStructType("S", {"a"}, {p3}));
  const Variable p = variable("p", p4), c = variable("c");
  const Equation equation = session.createSystemBuilder()->addEquation(
      expressions.createIndexRef(expressions.createStructRef(v, "a"), 2, 3),
      expressions.createConditional(c, expressions.createJoin({p, set(p4, {1, 3})}),
                                    expressions.createMeet({})));
  EXPECT_EQ(equation.print(),
            "IndexRef(StructRef(v,'a'),2 : 3) = "
            "Conditional(ctrlExpr: c,Join(p,0101),Meet))");
}

TEST_F(PrinterTest, WritesValues) {
  const PowerSetType p2 = sets(2);
  const Array array = values.createArray({}, {2, 1}, {p2->getBottom(), p2->getBottom()});
  const Struct record = values.createStruct({}, {"b", "a"}, {array, set(sets(3), {2})});
  EXPECT_EQ(print(record), "Struct(a : 010,b : Array(1 : 00,2 : 00))");
  EXPECT_EQ(print(values.createArray({}, {65535, 7}, {{}, record})),
            "Array(7 : Struct(a : 010,b : Array(1 : 00,2 : 00)),65535 : )");
  EXPECT_EQ(print(set(sets(5), {1})), "00001");
  EXPECT_EQ(print(sets(0)->getTop()), "");
}

TEST_F(PrinterTest, WritesExpressions) {
  EXPECT_EQ(print(x), "x");
  EXPECT_EQ(print(expressions.createJoin({x, y})), "Join(x,y)");
  EXPECT_EQ(print(expressions.createMeet({x})), "Meet(x)");
  EXPECT_EQ(print(expressions.createIndexRef(x, 3)), "IndexRef(x,3 : 3)");
  EXPECT_EQ(print(expressions.createStructRef(x, "f")), "StructRef(x,'f')");
  EXPECT_EQ(print(expressions.createPrune(x, {"a", "b"})), "prune(x,[a b ])");
  EXPECT_EQ(print(expressions.createPrune(x, {})), "prune(x,[])");
  EXPECT_EQ(print(expressions.createConditional(x, y, x)), "Conditional(ctrlExpr: x,y,x)");
}

TEST_F(PrinterTest, EmptyListsHaveNoOpeningParenthesis) {
  EXPECT_EQ(print(expressions.createJoin({})), "Join)");
  EXPECT_EQ(print(expressions.createMeet({})), "Meet)");
  EXPECT_EQ(print(values.createStruct({}, {}, {})), "Struct)");
  EXPECT_EQ(print(values.createArray({}, {}, {})), "Array)");
}

TEST_F(PrinterTest, WhatHasNoTextKeepsItsSeparators) {
  EXPECT_EQ(print(expressions.createJoin({{}, x})), "Join(,x)");
  EXPECT_EQ(print(expressions.createJoin({{}})), "Join()");
  EXPECT_EQ(print(expressions.createMeet({x, {}, {}})), "Meet(x,,)");
  EXPECT_EQ(print(values.createStruct({}, {"a", "b"}, {{}, {}})), "Struct(a : ,b : )");
  EXPECT_EQ(print(expressions.createConditional({}, {}, {})), "Conditional(ctrlExpr: ,,)");
  EXPECT_EQ(print(session.createSystemBuilder()->addEquation({}, {})), " = ");
  EXPECT_EQ(print(expressions.createStructRef({}, "")), "StructRef(,'')");
}

TEST_F(PrinterTest, OtherElementsHaveNoText) {
  EXPECT_EQ(print({}) + print(sets(3)) + print(make<FieldType>()) + print(make<System>()) +
                print(field("f", sets(2)->getTop())),
            "");
}

}  // namespace
}  // namespace torvan::datamodel
