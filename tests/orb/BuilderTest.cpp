#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using orb::zero::Value;

class BuilderTest : public SessionTest {
 protected:
  static std::unique_ptr<ModelElement::Builder> fieldBuilder(const Model& owner,
                                                             const std::string& name) {
    auto builder = std::make_unique<FieldElem::Builder>(owner);
    (*builder)->basicSetName(name);
    return builder;
  }
};

TEST_F(BuilderTest, StagedElementIsNotPartOfTheModel) {
  const PowerSetType type = sets(3);
  const std::size_t before = model.size();
  Struct::Builder builder(model);
  EXPECT_EQ(builder.getMetaClass(), Struct::metaClass());
  builder->setType(type);
  builder.add(Struct::values(), fieldBuilder(model, "b"));
  builder.add(Struct::values(), fieldBuilder(model, "a"));
  EXPECT_EQ(model.size(), before);
  const Struct record = builder.create();
  EXPECT_EQ(model.size(), before + 3);
  EXPECT_TRUE(record->getType() == type && record->getValues()["a"]->getContainer() == record);
  EXPECT_RAISES(builder.create(), "InvalidValue");
  EXPECT_RAISES(builder.create(model.newUuid()), "InvalidValue");
  EXPECT_RAISES(builder->hasType(), "InvalidValue");
  FieldElem::Builder part(model);
  EXPECT_TRUE(record->createIntoValues(part, model.newUuid())->getContainer() == record);
  expectConsistent(model);
}

TEST_F(BuilderTest, RefusedPartsLeaveNothing) {
  const Model foreign = Model::create();
  const Struct record = make<Struct>();
  const auto before = snapshot(model);
  Struct::Builder twice(model), unfit(model);
  for (int i = 0; i < 2; ++i) twice.add(Struct::values(), fieldBuilder(model, "a"));
  unfit.add(Struct::values(), fieldBuilder(model, "a"));
  unfit.add(Struct::values(), std::make_unique<Equation::Builder>(model));
  EXPECT_RAISES(twice.create(), "UniquenessConstraint");
  EXPECT_RAISES(unfit.create(),
                "CannotAddIncompatibleTypes(torvan.datamodel.Equation,torvan.datamodel.FieldElem)");
  std::unique_ptr<ModelElement::Builder> other = fieldBuilder(foreign, "a");
  EXPECT_RAISES(twice.setOrAdd(Struct::values(), other), "CannotCreateCrossModelAssociation");
  EXPECT_RAISES(twice.setOrAdd(Struct::type(), other), "InvalidValue");
  EXPECT_TRUE(other);  // is left to the caller
  EXPECT_RAISES(twice.add(Struct::values(), nullptr), "InvalidValue");
  FieldElem::Builder part(foreign);
  EXPECT_RAISES(record->createIntoValues(part, model.newUuid()),
                "CannotCreateCrossModelAssociation");
  EXPECT_EQ(snapshot(model) + snapshot(foreign), before);
}

TEST_F(BuilderTest, OutlivesWhatItWasGivenAndARefusal) {
  const LatticeType type = sets(2);
  const Variable x = variable("x"), y = variable("y");
  const FieldElem part = field("a"), moved = field("b"), kept = field("c");
  Join::Builder join(model);
  join->setType(type);
  for (const Variable& operand : {x, y, x}) join->getOperands().add(operand);
  {
    const Transaction undone(model);
    for (const Variable lost = variable("z"); const Variable& operand : {lost, lost})
      join->getOperands().add(operand);
  }
  Struct::Builder record(model);
  for (const FieldElem& each : {part, moved, kept}) record->getValues().insert(each);
  type->destroy();
  x->destroy();
  part->destroy();
  const Struct other = make<Struct>();
  other->getValues().insert(moved);
  Model::Freezer::freeze(model);
  EXPECT_RAISES(join.create(), "CannotModifyFrozenModel");
  EXPECT_RAISES(record.create(), "CannotModifyFrozenModel");
  const auto thaw = Model::Freezer::thaw(model);

  const Join made = join.create();
  EXPECT_FALSE(made->hasType());
  ASSERT_EQ(made->getOperands().size(), 1U);
  EXPECT_TRUE(made->getOperands()[0] == y);
  const Struct built = record.create();
  EXPECT_TRUE(built->getValues().size() == 1 && built->getValues()["c"] == kept);
  EXPECT_TRUE(kept->getContainer() == built && moved->getContainer() == other);
  expectConsistent(model);
}

/// Nothing of what a builder does to others' elements is taken back at the builder.
TEST_F(BuilderTest, KeepsOnlyWhatIsItsOwnAfterAnUndo) {
  const Equation kept = make<Equation>(), back = make<Equation>();
  const FieldType field = fieldType("a");
  const System system = systemOf({back});
  System::Builder builder(model);
  StructType::Builder record(model);
  {
    const Transaction transaction(model);
    for (const Equation& each : {make<Equation>(), back, kept}) builder->getEquations().add(each);
    record->getFields().insert(field);
    field->setName("b");
  }
  field->setName("c");
  const FieldType owned = fieldType("a");
  const StructType owner = make<StructType>();
  owner->getFields().insert(owned);
  StructType::Builder again(model);
  {
    const Transaction transaction(model);
    again->getFields().insert(owned);
  }
  EXPECT_TRUE(owned->getContainer() == owner);
  const FieldType renamed = fieldType("x");
  again->getFields().insert(renamed);
  renamed->setName("a");
  renamed->setName("y");
  again->getFields().insert(owned);
  EXPECT_TRUE(again.create()->getFields()["a"] == owned && !owner->hasFields());
  const System made = builder.create();
  EXPECT_TRUE(made->getPropertyValue(System::equations()) == orb::zero::Value(std::vector{kept}));
  EXPECT_TRUE(record.create()->getFields()["c"] == field);
  EXPECT_TRUE(back->getContainer() == system);
  expectConsistent(model);
}

TEST_F(BuilderTest, RefusedSequenceChangesNothing) {
  const Variable x = variable("x"), y = variable("y");
  const Variable alien = Variable::Builder(Model::create()).create();
  Join::Builder join(model);
  join.setOrAdd(Join::operands(), Value(std::vector<ModelElement>{x, y, x}));
  EXPECT_RAISES(join.setOrAdd(Join::operands(), Value(std::vector<ModelElement>{y, alien})),
                "CannotCreateCrossModelAssociation");
  EXPECT_EQ(join.create()->getOperands().size(), 3U);

  const Struct owner = make<Struct>();
  const FieldElem moved = field("a"), kept = field("c");
  owner->getValues().insert(moved);
  Struct::Builder record(model);
  record.setOrAdd(Struct::values(), Value(std::vector<ModelElement>{kept, kept}));
  const std::vector<ModelElement> colliding{moved, kept, field("b"), field("a")};
  EXPECT_RAISES(record.setOrAdd(Struct::values(), Value(colliding)), "UniquenessConstraint");
  EXPECT_TRUE(moved->getContainer() == owner && owner->getValues()["a"] == moved);
  const Struct made = record.create();
  EXPECT_TRUE(made->getValues().size() == 1 && made->getValues()["c"] == kept);
}

TEST_F(BuilderTest, DroppedBuilderLeavesNothing) {
  const FieldElem part = field("a");
  const LatticeType type = sets(2);
  const auto before = snapshot(model);
  ModelElement staged;
  {
    Struct::Builder dropped(model), undone(model);
    dropped->setType(type);
    dropped->getValues().insert(part);
    staged = part->getContainer();
    dropped.add(Struct::values(), fieldBuilder(model, "b"));
    const Transaction transaction(model);
    undone->getValues().insert(part);
    undone.create();
  }
  EXPECT_EQ(snapshot(model), before);
  EXPECT_FALSE(part->getContainer());
  const Struct next = make<Struct>();
  EXPECT_FALSE(staged || staged == next);
  expectConsistent(model);
}

}  // namespace
}  // namespace torvan::datamodel
