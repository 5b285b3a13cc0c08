#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

class BuilderTest : public SessionTest {
 protected:
  static std::unique_ptr<ModelElement::Builder> fieldBuilder(const Model& owner,
                                                             const std::string& name) {
    auto builder = std::make_unique<FieldElem::Builder>(owner);
    (*builder)->basicSetName(name);
    return builder;
  }
  /// What creating a record with these parts raises; it has to leave nothing.
  std::string refusalOf(std::vector<std::unique_ptr<ModelElement::Builder>> parts) {
    const auto before = snapshot(model);
    Struct::Builder builder(model);
    for (auto& part : parts) builder.add(Struct::values(), std::move(part));
    const std::string refusal = failureOf([&] { builder.create(); });
    EXPECT_EQ(snapshot(model), before);
    return refusal;
  }
};

TEST_F(BuilderTest, StagedElementIsNotPartOfTheModel) {
  const PowerSetType type = sets(3);
  const std::size_t before = model.size();
  PowerSet::Builder builder(model);
  EXPECT_EQ(builder.getMetaClass(), PowerSet::metaClass());
  builder->setType(type);
  builder->setValue(bitsOf(3, {2}));
  EXPECT_EQ(model.size(), before);
  const PowerSet value = builder.create();
  EXPECT_TRUE(value->getType() == type && value->hasValue());
  EXPECT_EQ(failureOf([&] { builder.create(); }), "InvalidValue");
  EXPECT_EQ(failureOf([&] { builder.create(model.newUuid()); }), "InvalidValue");
  EXPECT_EQ(failureOf([&] { builder->getValue(); }), "InvalidValue");
  EXPECT_EQ(model.size(), before + 1);
}

TEST_F(BuilderTest, PartsAreCreatedWithTheirOwner) {
  Struct::Builder builder(model);
  builder.add(Struct::values(), fieldBuilder(model, "b"));
  builder.add(Struct::values(), fieldBuilder(model, "a"));
  EXPECT_EQ(model.size(), 0U);
  const Struct record = builder.create();
  EXPECT_EQ(model.size(), 3U);
  EXPECT_TRUE(record->getValues()["a"]->getContainer() == record);
  expectConsistent(model);

  const Transaction transaction(model);
  const FieldElem more = record->createIntoValues(
      static_cast<FieldElem::Builder&>(*fieldBuilder(model, "c")), model.newUuid());
  EXPECT_TRUE(more->getContainer() == record);
}

TEST_F(BuilderTest, RefusedCreationLeavesNothing) {
  std::vector<std::unique_ptr<ModelElement::Builder>> parts;
  parts.push_back(fieldBuilder(model, "a"));
  parts.push_back(fieldBuilder(model, "a"));
  EXPECT_EQ(refusalOf(std::move(parts)), "UniquenessConstraint");
  parts.clear();
  parts.push_back(fieldBuilder(model, "a"));
  parts.push_back(std::make_unique<Equation::Builder>(model));
  EXPECT_EQ(refusalOf(std::move(parts)),
            "CannotAddIncompatibleTypes(torvan.datamodel.Equation,torvan.datamodel.FieldElem)");
}

TEST_F(BuilderTest, PartOfAnotherModelIsRefusedInBoth) {
  const Session foreign;
  Struct::Builder builder(model);
  EXPECT_EQ(failureOf([&] { builder.add(Struct::values(), fieldBuilder(foreign.model(), "a")); }),
            "CannotCreateCrossModelAssociation");
  EXPECT_EQ(failureOf([&] { builder.add(Struct::values(), nullptr); }), "InvalidValue");
  const Struct record = builder.create();
  FieldElem::Builder field(foreign.model());
  EXPECT_EQ(failureOf([&] { record->createIntoValues(field, model.newUuid()); }),
            "CannotCreateCrossModelAssociation");
  EXPECT_TRUE(record->getValues().empty());
  EXPECT_EQ(foreign.model().size(), 0U);
}

TEST_F(BuilderTest, OutlivesWhatItWasGiven) {
  const LatticeType type = sets(2);
  const Variable x = variable("x"), y = variable("y");
  const FieldElem part = field("a"), moved = field("b");
  Join::Builder join(model);
  join->setType(type);
  for (const Variable& operand : {x, y, x}) join->getOperands().add(operand);
  Struct::Builder record(model);
  record->getValues().insert(part);
  record->getValues().insert(moved);
  type->destroy();
  x->destroy();
  part->destroy();
  const Struct other = make<Struct>();
  other->getValues().insert(moved);

  const Join made = join.create();
  EXPECT_FALSE(made->hasType());
  ASSERT_EQ(made->getOperands().size(), 1U);
  EXPECT_TRUE(made->getOperands()[0] == y);
  EXPECT_FALSE(record.create()->hasValues());
  EXPECT_TRUE(moved->getContainer() == other);
  expectConsistent(model);
}

TEST_F(BuilderTest, DroppedBuilderLeavesNothing) {
  const FieldElem part = field("a");
  const LatticeType type = sets(2);
  const auto before = snapshot(model);
  {
    Struct::Builder dropped(model), undone(model);
    dropped->setType(type);
    dropped->getValues().insert(part);
    dropped.add(Struct::values(), fieldBuilder(model, "b"));
    const Transaction transaction(model);
    undone->getValues().insert(part);
    undone.create();
  }
  EXPECT_EQ(snapshot(model), before);
  EXPECT_FALSE(part->getContainer());
  expectConsistent(model);
}

}  // namespace
}  // namespace torvan::datamodel
