#include <orb/zero/meta/Emit.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {

/// An expression that only what is derived knows.
class Note : public orb::zero::Handle<Note, Expression> {
 public:
  class Impl;
  using Handle::Handle;
};
class Note::Impl : public orb::zero::ImplOf<Note> {
 public:
  static constexpr orb::zero::meta::Table table{orb::zero::meta::Instances::Concrete, "test.Note",
                                                "7c9b6d0e-5f0c-4f0f-8d53-1f6d1b0a6c11"};
};

/// One of a class that all know.
class Negation : public orb::zero::Handle<Negation, Join> {
 public:
  class Impl;
  using Handle::Handle;
};
class Negation::Impl : public orb::zero::ImplOf<Negation> {
 public:
  static constexpr orb::zero::meta::Table table{orb::zero::meta::Instances::Concrete,
                                                "test.Negation",
                                                "1f0f8a52-6c1e-4f0e-9a3d-5f1c2f7b9d24"};
};

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

TEST_F(VisitorTest, LongTextsAreWhole) {
  std::vector<Term> operands;
  std::string text, names;
  for (const std::size_t size : {1U, 4000U, 90U, 1U, 4096U, 4097U, 20'000U, 3U}) {
    const std::string name(size, static_cast<char>('a' + operands.size()));
    operands.push_back(variable(name));
    text += (text.empty() ? "Meet(" : ",") + name;
    names += name;
  }
  expect(expressions.createMeet(operands), text + ')', names);
}

TEST_F(VisitorTest, DerivedOnesKnowMoreClassesEverywhere) {
  struct Printer : PrettyPrinter {
    Printer() {
      add(Note::Uuid(), [](const ModelElement&) { return "note"; });
      add(Join::Uuid(), [](const ModelElement&) { return "too late"; });
      add(Negation::Uuid(), [this](auto& element) { return "not " + visit(Join{element}); });
    }
  };
  struct Endless : PrettyPrinter {
    Endless() {
      add(Note::Uuid(), [this](auto& element) { return dispatch(element); });
    }
  };
  struct Collector : RefVariableCollector {
    explicit Collector(const std::vector<Term>& instead) {
      add(Note::Uuid(), [this, instead](const ModelElement&) {
        for (const Term& term : instead) dispatch(term);
      });
      add(Negation::Uuid(), [this](auto& element) { visit(Join{element}); });
    }
  };
  const Note note = make<Note>();
  const Join join = expressions.createJoin({x, note, expressions.createPrune(note, {})});
  expect(join, "Join(x,,prune(,[]))", "x");
  EXPECT_EQ(Printer().dispatch(join), "Join(x,note,prune(note,[]))");
  EXPECT_EQ(Printer().dispatch(note), "note");
  Collector collector({expressions.createMeet({y, z}), x});
  collector.dispatch(join);
  EXPECT_EQ(collector.getVariables(), (std::vector<Variable>{x, y, z, x, y, z, x}));

  const auto negation = make<Negation>();
  for (const Variable& operand : {x, y}) negation->getOperands().add(operand);
  const Join outer = expressions.createJoin({negation, z});
  expect(outer, "Join(Join(x,y),z)", "xyz");
  EXPECT_EQ(Printer().dispatch(outer), "Join(not Join(x,y),z)");
  collector.takeVariables();
  collector.dispatch(outer);
  EXPECT_EQ(collector.getVariables(), (std::vector<Variable>{x, y, z}));

  negation->getOperands().add(outer);
  EXPECT_RAISES(Printer().dispatch(outer), "CyclicValue");
  EXPECT_RAISES(collector.dispatch(outer), "CyclicValue");
  EXPECT_RAISES(Endless().dispatch(note), "CyclicValue");
}

}  // namespace
}  // namespace torvan::datamodel
