#include "tests/datamodel/SessionTest.h"
#include "tests/orb/Diary.h"

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
  const auto expectOld = [&](const auto& source, const std::string& name, const std::string& list) {
    EXPECT_EQ(Diary::textOf(source->getOldValue(LatticeType::name())), name);
    EXPECT_EQ(Diary::textOf(source->getOldValue(PowerSetType::universe())), list);
  };
  const auto change = [&](const std::string& name) {
    type->setName(name);
    type->getUniverse().insert(0, name);
  };
  const Transaction outer(model);
  change("a");
  {
    const Transaction inner(model);
    change("b");
    expectOld(type.get()->storage(), "a", "[a]");
    expectOld(type, "P", "[]");
  }
  change("c");
  expectOld(type.get()->storage(), "P", "[]");
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
