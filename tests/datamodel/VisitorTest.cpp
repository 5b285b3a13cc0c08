#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

/// What is printed of an element, and the variables that are collected from it.
class VisitorTest : public SessionTest {
 protected:
  static void expect(const ModelElement& element, const std::string& text,
                     const std::string& variables) {
    EXPECT_EQ(PrettyPrinter().dispatch(element), text);
    RefVariableCollector collector;
    collector.dispatch(element);
    std::string names;
    for (const Variable& found : collector.getVariables()) names += found->getName();
    EXPECT_EQ(names, variables) << text;
  }

  const Variable x = variable("x"), y = variable("y"), z = variable("z");
};

TEST_F(VisitorTest, Values) {
  const PowerSetType p2 = sets(2);
  const Array array = values.createArray({}, {2, 1}, {p2->getBottom(), p2->getBottom()});
  const Struct record = values.createStruct({}, {"b", "a"}, {array, set(sets(3), {2})});
  expect(record, "Struct(a : 010,b : Array(1 : 00,2 : 00))", "");
  expect(values.createArray({}, {65535, 7}, {{}, record}),
         "Array(7 : Struct(a : 010,b : Array(1 : 00,2 : 00)),65535 : )", "");
  expect(set(sets(5), {1}), "00001", "");
  expect(sets(0)->getTop(), "", "");
}

TEST_F(VisitorTest, ExpressionsFromLeftToRight) {
  const StructRef part = expressions.createStructRef(z, "f");
  expect(x, "x", "x");
  expect(expressions.createMeet({x, set(sets(2), {1}), x}), "Meet(x,01,x)", "xx");
  expect(expressions.createIndexRef(part, 3), "IndexRef(StructRef(z,'f'),3 : 3)", "z");
  expect(expressions.createPrune(x, {"a", "b"}), "prune(x,[a b ])", "x");
  expect(expressions.createPrune(x, {}), "prune(x,[])", "x");
  expect(expressions.createJoin({x, expressions.createConditional(y, z, x), part}),
         "Join(x,Conditional(ctrlExpr: y,z,x),StructRef(z,'f'))", "xyzxz");
}

TEST_F(VisitorTest, EmptyListsHaveNoOpeningParenthesis) {
  expect(expressions.createJoin({}), "Join)", "");
  expect(expressions.createMeet({}), "Meet)", "");
  expect(values.createStruct({}, {}, {}), "Struct)", "");
  expect(values.createArray({}, {}, {}), "Array)", "");
}

TEST_F(VisitorTest, WhatIsEmptyKeepsItsSeparators) {
  expect(expressions.createJoin({{}, x}), "Join(,x)", "x");
  expect(expressions.createJoin({{}}), "Join()", "");
  expect(expressions.createMeet({x, {}, {}}), "Meet(x,,)", "x");
  expect(values.createStruct({}, {"a", "b"}, {{}, {}}), "Struct(a : ,b : )", "");
  expect(expressions.createConditional({}, {}, x), "Conditional(ctrlExpr: ,,x)", "x");
  expect(expressions.createStructRef({}, ""), "StructRef(,'')", "");
  expect(session.createSystemBuilder()->addEquation({}, x), " = x", "");
  expect(session.createSystemBuilder()->addEquation(x, y), "x = y", "");
}

TEST_F(VisitorTest, OtherElementsHaveNoText) {
  for (const ModelElement& other : std::vector<ModelElement>{
           {}, sets(3), make<FieldType>(), make<System>(), field("f", sets(2)->getTop())})
    expect(other, "", "");
}

}  // namespace
}  // namespace torvan::datamodel
