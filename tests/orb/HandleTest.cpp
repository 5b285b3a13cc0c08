#include <utility>

#include <orb/zero/ModelConstellation.h>
#include <orb/zero/TransactionCoordinator.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using orb::zero::ModelConstellation;
using HandleTest = SessionTest;

static_assert(sizeof(ModelElement) == sizeof(void*) && sizeof(PowerSet) == sizeof(void*));

TEST_F(HandleTest, DownCastIsChecked) {
  const LatticeValue value = set(sets(3), {1}), empty, copy = empty;
  EXPECT_EQ(PowerSet(value)->getValue(), bitsOf(3, {1}));
  EXPECT_TRUE(IndexableValue{value} == value);
  EXPECT_RAISES(Struct{value}, castFailure<Struct>());
  EXPECT_RAISES(LExpression{value}, castFailure<LExpression>());
  EXPECT_TRUE(!copy && copy == empty && !Struct{empty});
  EXPECT_RAISES(empty.clone(), castFailure<LatticeValue>());
  value->destroy();
  EXPECT_TRUE(!PowerSet{value} && value != empty);  // a cast asks for the class alone
}

/// A copy of a slot would be of no use to those who take one.
TEST_F(HandleTest, CollectionsHandOutHandles) {
  const StructType record = types.createStructType("S", {"a"}, {sets(1)});
  const Join join = expressions.createJoin({variable("x")});
  const std::vector fields(record->getFields().begin(), record->getFields().end());
  auto field = (*record->getFields().begin()).second;
  auto operand = join->getOperands()[0], first = *join->getOperands().begin();
  EXPECT_FALSE(operand.isSlot() || first.isSlot() || field.isSlot() || fields[0].second.isSlot());
  for (auto each : join->getOperands()) EXPECT_FALSE(each.isSlot());
}

TEST_F(HandleTest, SlotStaysASlotWhateverIsWrittenToIt) {
  const LatticeValue a = set(sets(2), {1}), b = set(sets(2), {2});
  const FieldElem owner = field("f", a);
  LatticeValue* const slot = owner.ref();
  ASSERT_TRUE(slot->isSlot());

  LatticeValue copy = *slot;
  LatticeValue moved = std::move(*slot);
  EXPECT_FALSE(copy.isSlot() || moved.isSlot());
  EXPECT_TRUE(*slot == a);  // nobody steals from a slot
  EXPECT_EQ(a.get()->slotCount(), 1U);
  EXPECT_EQ(a.get()->outsideCount(), 3U);

  moved = b;
  *slot = std::move(moved);
  EXPECT_TRUE(slot->isSlot());
  EXPECT_EQ(a.get()->slotCount(), 0U);
  EXPECT_EQ(b.get()->slotCount(), 1U);
  std::swap(*slot, copy);
  EXPECT_TRUE(slot->isSlot() && !copy.isSlot());
  EXPECT_TRUE(*slot == a && copy == b);
  *slot = *field("g", b).ref();
  EXPECT_EQ(b.get()->slotCount(), 2U);
  *slot = LatticeValue();
  EXPECT_TRUE(slot->isSlot());
  EXPECT_FALSE(owner->hasValue());
}

TEST(HandleLifetimeTest, ModelEndsWithItsLastOutsideHandle) {
  const ModelConstellation group, copy = group;
  const Model other = Model::create({}, copy, orb::zero::DefaultWorkQueueFactory());
  ModelElement held;
  {
    orb::zero::TransactionCoordinator* told = nullptr;
    const Model model = Model::create(other.newUuid(), group, [&](auto* coordinator) {
      return orb::zero::DefaultWorkQueueFactory()(told = coordinator);
    });
    EXPECT_EQ(told, &model->transactions());
    ValueFactory values(model);
    TypeFactory types(model);
    types.valueFactory(&values);
    const auto type = types.createPowerSetType("P", 3);  // a ring with its top and bottom
    const auto record = types.createStructType("S", {"a"}, {type});
    held = record->getFields()["a"];
    EXPECT_EQ(group.getModels(), (std::vector{other, model}));
  }
  ASSERT_EQ(copy.getModels().size(), 2U);
  EXPECT_EQ(copy.getModels()[1].size(), 9U);
  ModelElement child = std::move(held);
  held = child->getContainer();  // a child's handle holds as well as its owner's
  held->destroy();
  held = child;
  EXPECT_TRUE(!held && copy.getModels().size() == 2);
  held = child = ModelElement();
  EXPECT_EQ(group.getModels(), std::vector{other});
}

}  // namespace
}  // namespace torvan::datamodel
