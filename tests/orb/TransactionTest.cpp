#include <orb/zero/ModelChanges.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class TransactionTest : public SessionTest {
 protected:
  PowerSetType type = sets(3);
};

TEST_F(TransactionTest, MayEndBeforeItsScope) {
  Transaction outer(model);
  type->setName("1");
  {
    Transaction inner(model);
    type->setName("2");
    inner.commit();
    inner.rollback();  // has ended
  }
  EXPECT_EQ(type->getName(), "2");
  Transaction last(model);
  outer.rollback();
  EXPECT_EQ(type->getName(), "P");
  type->setName("3");
  last.rollback();  // has ended with the outer one
  outer.commit();
  EXPECT_EQ(type->getName(), "3");
}

TEST_F(TransactionTest, StorageKeepsTheValuesBeforeTheInnermost) {
  const auto oldName = [](const auto& source) {
    return source->getOldValue(LatticeType::name()).template getValue<std::string>();
  };
  const Transaction outer(model);
  type->setName("a");
  {
    const Transaction inner(model);
    type->setName("b");
    EXPECT_EQ(oldName(type.get()->storage()), "a");
    EXPECT_EQ(oldName(type), "P");
  }
  type->setName("c");
  EXPECT_EQ(oldName(type.get()->storage()), "P");
}

TEST_F(TransactionTest, WhatIsNewHasNoOldValues) {
  const Transaction outer(model);
  const Equation equation = make<Equation>();
  const System made = make<System>();
  inTransaction([&] { made->getEquations().add(equation); });
  made->getEquations().remove(equation);
  EXPECT_TRUE(made->getOldValue(System::equations()) == made->getPropertyValue("equations"));
  EXPECT_TRUE(made->createChanges().properties.empty());
}

TEST_F(TransactionTest, SlotsAndBitsStayWhereTheyAre) {
  const StructType record = types.createStructType("S", {"a", "b"}, {type, type});
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
