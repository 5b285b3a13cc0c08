#include <orb/zero/Value.h>
#include <orb/zero/meta/AbstractMetaPackage.h>
#include <orb/zero/meta/Operation.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using orb::zero::Value;

/// Operations called by their names.
class OperationTest : public SessionTest {
 protected:
  static meta::Invoker invoker(const meta::ClassInfo& type, std::string_view name) {
    for (const meta::ClassInfo* level = &type; level; level = level->superclass)
      for (const meta::Operation& operation : meta::Class(*level)->getOperations())
        if (operation->getName() == orb::zero::toUtf16(name)) return operation->getInvoker();
    return nullptr;
  }
  template <class Result>
  static Result call(const ModelElement& receiver, std::string_view name,
                     const std::vector<Value>& arguments = {}) {
    return invoker(receiver->getMetaClass(), name)(receiver, arguments).template getValue<Result>();
  }

  PowerSetType p = sets(4);
  PowerSet a = set(p, {1, 2}), b = set(p, {2, 3});
  StructType record = types.createStructType("R", {"x", "y"}, {p, p});
  Struct s = values.createStruct(record, {"x"}, {a});
};

TEST_F(OperationTest, NamesCallTheirMethods) {
  const LatticeValue copy = call<LatticeValue>(a, "clone");
  EXPECT_TRUE(copy.eq(a) && !(copy == a));
  EXPECT_TRUE(call<LatticeValue>(a, "join", {b}).eq(a.join(b)));
  EXPECT_TRUE(call<PowerSet>(a, "meet", {b}).eq(a.meet(b)));
  EXPECT_EQ(call<boolean3>(a, "le", {a.join(b)}), boolean3::T);
  EXPECT_TRUE(call<bool>(a, "eq", {copy}) && call<bool>(p, "isCompatible", {sets(4)}));
  const std::uint16_t start = 2, end = 3;
  EXPECT_EQ(call<PowerSet>(a, "at", {start, end})->getValue(), bitsOf(2, {1}));
  EXPECT_TRUE(call<Ref>(a, "ref", {start, end}) == a.ref(2, 3));

  const std::string x = "x";
  EXPECT_TRUE(call<LatticeValue>(s, "at", {x}) == a);
  EXPECT_TRUE(call<Ref>(s, "ref", {x}) == s.ref(x));
  EXPECT_FALSE(call<Struct>(s, "prune", {std::vector{x}})->getValues().contains(x));
  EXPECT_TRUE(call<LatticeType>(record, "at", {x}) == p);
  const FieldElem field = s->getValues()[x];
  const ArrayElem item = values.createArray({}, {1}, {a})->getValues()[1];
  EXPECT_EQ(call<LatticeValue*>(field, "ref"), field.ref());
  EXPECT_EQ(call<LatticeValue*>(item, "ref"), item.ref());

  const Variable left = variable("l", p), right = variable("r", p);
  const Equation equation = session.createSystemBuilder()->addEquation(
      left, expressions.createJoin({right, left, right}));
  EXPECT_EQ(call<std::string>(equation, "print"), equation.print());
  EXPECT_TRUE(call<Variable>(equation, "getLhsVariable") == left);
  EXPECT_EQ(call<std::vector<Variable>>(equation, "getRhsVariables"),
            (std::vector{right, left, right}));
}

TEST_F(OperationTest, RefusesWhatTheMethodWouldNotTake) {
  const auto failure = [&](const ModelElement& receiver, const std::vector<Value>& arguments) {
    return failureOf([&] { invoker(LatticeValue::metaClass(), "join")(receiver, arguments); });
  };
  EXPECT_EQ(failure(a, {}), "InvalidValue");
  EXPECT_EQ(failure(a, {b, b}), "InvalidValue");
  EXPECT_EQ(failure(a, {p}), castFailure<LatticeValue>());
  EXPECT_EQ(failure({}, {b}), castFailure<LatticeValue>());
  EXPECT_EQ(failure(p, {b}), castFailure<LatticeValue>());
  EXPECT_EQ(failure(a, {s}), castFailure<PowerSet>());
  const std::vector<Value> integers{1, 2};  // int is another type
  EXPECT_RAISES(call<LatticeValue>(a, "at", integers), "CannotCastIncompatibleTypes(UInteger16)");
}

}  // namespace
}  // namespace torvan::datamodel
