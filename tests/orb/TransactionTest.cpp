#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

class TransactionTest : public SessionTest {
 protected:
  /// Runs the changes in a transaction that leaves its scope, and compares.
  template <class Changes>
  void expectUndone(Changes changes) {
    const auto before = snapshot(model);
    {
      const Transaction transaction(model);
      changes();
      EXPECT_NE(snapshot(model), before);
      expectConsistent(model);
    }
    EXPECT_EQ(snapshot(model), before);
    expectConsistent(model);
  }

  PowerSetType type = sets(3);
  StructType record = types.createStructType("S", {"a", "b"}, {type, type});
};

TEST_F(TransactionTest, SavepointsNest) {
  type->setName("0");
  Transaction outer(model);
  type->setName("1");
  {
    const Transaction inner(model);
    type->setName("2");
    {
      Transaction innermost(model);
      type->setName("3");
      innermost.commit();
    }
    EXPECT_EQ(type->getName(), "3");
  }
  EXPECT_EQ(type->getName(), "1");
  {
    Transaction inner(model);
    type->setName("4");
    inner.commit();
    inner.rollback();  // has ended
  }
  EXPECT_EQ(type->getName(), "4");
  Transaction last(model);
  outer.rollback();
  type->setName("5");
  last.rollback();  // has ended with the outer one
  outer.commit();
  EXPECT_EQ(type->getName(), "5");
}

TEST_F(TransactionTest, RestoresValuesAndUnsetState) {
  const PowerSetType blank = make<PowerSetType>();
  const PowerSet value = set(type, {2}), empty = make<PowerSet>();
  const Variable x = variable("x", type), y = make<Variable>();
  expectUndone([&] {
    blank->setNumElems(0);
    blank->setName("");
    EXPECT_TRUE(blank->hasNumElems() && blank->hasName());
    empty->setValue(BitSet());
    EXPECT_TRUE(empty->hasValue());
    value->setValue(bitsOf(70, {1, 70}));
    value->setValue(bitsOf(1, {1}));
    x->setType(blank);
    x->setType({});
    x->setType(record);
    y->setType(type);
  });
  EXPECT_FALSE(blank->hasNumElems() || blank->hasName() || empty->hasValue() || y->hasType());
  EXPECT_EQ(value->getValue(), bitsOf(3, {2}));
}

TEST_F(TransactionTest, DestructionClearsReferencesAndRollbackRestoresThem) {
  const Variable x = variable("x", type), y = variable("y", type);
  const Join join = expressions.createJoin({x, y, x, {}});
  const LatticeValue top = type->getTop();
  expectUndone([&] {
    x->destroy();
    EXPECT_EQ(join->getOperands().size(), 2U);
    EXPECT_TRUE(join->getOperands()[0] == y);
    type->destroy();
    EXPECT_FALSE(y->hasType() || top->hasType() || join->hasType());
    EXPECT_FALSE(record.at("a"));
    EXPECT_TRUE(top);
  });
  EXPECT_TRUE(join->getOperands()[2] == x);
  EXPECT_FALSE(join->getOperands()[3]);
  EXPECT_TRUE(top->getType() == type);

  Transaction final(model);
  x->destroy();
  final.commit();
  EXPECT_EQ(expressions.createJoin({y})->getOperands().size() + join->getOperands().size(), 3U);
}

TEST_F(TransactionTest, FarReferencesAreFoundAlsoWhenTheyChange) {
  constexpr std::size_t count = 200;
  std::vector<Variable> variables;
  for (std::size_t i = 0; i < count; ++i) variables.push_back(make<Variable>());
  std::vector<Equation> equations;
  for (std::size_t i = 0; i < count; ++i) {
    equations.push_back(make<Equation>());
    equations[i]->setLhs(variables[i]);
    equations[i]->setRhs(variables[count - 1 - i]);
  }
  expectUndone([&] {
    for (std::size_t i = 0; i < count; ++i) {
      if (i % 10 == 3) equations[i]->setLhs(variables[i * 7 % count]);
      if (i % 10 == 6) equations[i]->setRhs(make<Variable>());
      variables[i * 67 % count]->destroy();
      for (const Equation& equation : equations) {
        EXPECT_EQ(equation->hasLhs(), equation->getLhs().get() != nullptr);
        EXPECT_EQ(equation->hasRhs(), equation->getRhs().get() != nullptr);
      }
    }
  });
}

TEST_F(TransactionTest, SlotsAndBitsStayWhereTheyAre) {
  const Struct value{record->getTop().clone()};
  LatticeValue* const slot = value->getValues()["a"].ref();
  const BitSet* const bits = &PowerSet(*slot)->getValue();
  {
    const Transaction transaction(model);
    value->getValues().insert(field("c"));
    value->getValues()["a"]->setValue({});
    PowerSet(value.at("b"))->setValue(bitsOf(100, {}));
    value->getValues().erase("a");
  }
  EXPECT_EQ(value->getValues()["a"].ref(), slot);
  EXPECT_EQ(&PowerSet(*slot)->getValue(), bits);
}

}  // namespace
}  // namespace torvan::datamodel
