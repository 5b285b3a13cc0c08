#include <utility>

#include <orb/zero/ModelConstellation.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using orb::zero::ModelConstellation;
using HandleTest = SessionTest;

static_assert(sizeof(ModelElement) == sizeof(void*) && sizeof(PowerSet) == sizeof(void*));

TEST_F(HandleTest, DownCastIsChecked) {
  const LatticeValue value = set(sets(3), {1});
  EXPECT_EQ(PowerSet(value)->getValue(), bitsOf(3, {1}));
  EXPECT_TRUE(IndexableValue{value} == value);
  EXPECT_EQ(failureOf([&] { Struct{value}; }),
            "CannotCastIncompatibleTypes(torvan.datamodel.Struct)");
  EXPECT_EQ(failureOf([&] { LExpression{value}; }),
            "CannotCastIncompatibleTypes(torvan.datamodel.LExpression)");
  EXPECT_FALSE(Struct{ModelElement()});
}

TEST_F(HandleTest, EmptyHandleRaisesItsClass) {
  const LatticeValue empty, copy = empty;
  EXPECT_FALSE(copy);
  EXPECT_TRUE(copy == empty);
  EXPECT_EQ(failureOf([&] { empty->getType(); }),
            "CannotCastIncompatibleTypes(torvan.datamodel.LatticeValue)");
  EXPECT_EQ(failureOf([&] { empty.clone(); }),
            "CannotCastIncompatibleTypes(torvan.datamodel.LatticeValue)");
  EXPECT_EQ(failureOf([] { PowerSet()->getValue(); }),
            "CannotCastIncompatibleTypes(torvan.datamodel.PowerSet)");
  EXPECT_EQ(failureOf([] { ModelElement()->getUuid(); }),
            "CannotCastIncompatibleTypes(orb.zero.ModelElement)");
}

TEST_F(HandleTest, DestroyedElementIsFalseUntilRevived) {
  const Struct record = make<Struct>();
  const FieldElem child = field("a");
  record->getValues().insert(child);
  const Struct copy = record;
  {
    const Transaction transaction(model);
    record->destroy();
    EXPECT_FALSE(record);
    EXPECT_FALSE(child);
    EXPECT_TRUE(copy == record);
    EXPECT_EQ(failureOf([&] { record->hasValues(); }),
              "CannotCastIncompatibleTypes(torvan.datamodel.Struct)");
    EXPECT_EQ(failureOf([&] { child->destroy(); }),
              "CannotCastIncompatibleTypes(torvan.datamodel.FieldElem)");
  }
  EXPECT_TRUE(record);
  EXPECT_TRUE(child->getContainer() == record);
  record->destroy();
  EXPECT_FALSE(child);
  EXPECT_FALSE(FieldElem{ModelElement(child)});  // a cast asks for the class alone
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
  const ModelConstellation constellation;
  ModelElement held;
  {
    const Model model =
        Model::create(orb::zero::uuid{}, constellation, orb::zero::DefaultWorkQueueFactory());
    ValueFactory values(model);
    TypeFactory types(model);
    types.valueFactory(&values);
    const auto type = types.createPowerSetType("P", 3);  // a ring with its top and bottom
    const auto record = types.createStructType("S", {"a"}, {type});
    held = record->getFields()["a"];
  }
  ASSERT_EQ(constellation.getModels().size(), 1U);
  EXPECT_EQ(constellation.getModels()[0].size(), 9U);
  ModelElement copy = std::move(held);
  held = copy->getContainer();  // a child's handle holds as well as its owner's
  held->destroy();
  EXPECT_EQ(constellation.getModels().size(), 1U);
  held = copy;
  EXPECT_FALSE(held);
  held = ModelElement();
  copy = ModelElement();
  EXPECT_TRUE(constellation.getModels().empty());
}

TEST(HandleLifetimeTest, ManySessionsComeAndGo) {
  std::vector<Equation> kept;
  for (int i = 0; i < 10'000; ++i) {
    Session session;
    const auto type = session.typeFactory()->createPowerSetType("P", 2);
    const auto array = session.typeFactory()->createArrayType("A", type, 2);
    const auto x = session.expressionFactory()->createVariable(array, "x");
    const auto builder = session.createSystemBuilder();
    const auto equation = builder->addEquation(x, array->getTop());
    if (i % 100 == 0) kept.push_back(equation);
  }
  for (const Equation& equation : kept) ASSERT_EQ(equation.print(), "x = Array(1 : 11,2 : 11)");
  EXPECT_EQ(kept.size(), 100U);
}

}  // namespace
}  // namespace torvan::datamodel
