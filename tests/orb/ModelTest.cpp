#include <orb/zero/query/Query.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using orb::zero::uuid;
using orb::zero::query::SearchClassMatchMode;
using ModelTest = SessionTest;

uuid numbered(std::uint8_t number) { return {{number}}; }

TEST_F(ModelTest, IteratesInOrderOfCreation) {
  std::vector<Variable> all;
  for (const char* name : {"a", "b", "c", "d"}) all.push_back(variable(name));
  all[1]->destroy();
  std::string met;
  for (const ModelElement element : model.elements()) {
    met += Variable(element)->getName();
    if (met != "a") continue;
    element->destroy();
    all[2]->destroy();
    variable("e");
  }
  EXPECT_EQ(met, "ade");
  EXPECT_EQ(model.size(), 2U);
  for (const ModelElement element : model.elements()) element->destroy();
  {
    const Transaction undone(model);
    for (int i = 0; i < 9; ++i) variable("x")->destroy();
    EXPECT_TRUE(model.elements().begin() == model.elements().end());
  }
  const Variable f = variable("f");
  EXPECT_TRUE(*model.elements().begin() == f);
}

TEST_F(ModelTest, FindsElementsOfAClass) {
  types.createStructType("S", {"a"}, {sets(2)});
  const auto count = [&](const auto& type, SearchClassMatchMode mode) {
    std::vector<ModelElement> found;
    for (const ModelElement element : model.elements(type, mode)) found.push_back(element);
    query::Query<ModelElement> search(model);
    search.narrow(type, mode);
    EXPECT_EQ(search.execute(), found);
    return found.size();
  };
  EXPECT_EQ(count(LatticeType::metaClass(), SearchClassMatchMode::WithSubclasses), 2U);
  EXPECT_EQ(count(LatticeType::metaClass(), SearchClassMatchMode::ThisClassOnly), 0U);
  EXPECT_EQ(count(PowerSet::metaClass(), SearchClassMatchMode::ThisClassOnly), 2U);
  EXPECT_EQ(count(ModelElement::metaClass(), SearchClassMatchMode::WithSubclasses), 9U);
}

TEST_F(ModelTest, UuidIsUniqueAmongLiveElements) {
  const Variable first = Variable::create(model, numbered(1));
  EXPECT_RAISES(Struct::create(model, numbered(1)), "UniquenessConstraint");
  EXPECT_RAISES(Join::Builder(model).create(numbered(1)), "UniquenessConstraint");
  EXPECT_EQ(model.size(), 1U);
  EXPECT_TRUE(Variable::create(Session().model(), numbered(1)));
  {
    const Transaction transaction(model);
    first->destroy();
    EXPECT_FALSE(model.find(numbered(1)));
    const Struct second = Struct::create(model, numbered(1));
    const Struct third = Struct::create(model, numbered(2));
    EXPECT_TRUE(model.find(numbered(1)) == second && model.find(numbered(2)) == third);
  }
  EXPECT_TRUE(model.find(numbered(1)) == first && !model.find(numbered(2)));
  EXPECT_TRUE(model.find(numbered(2)) == Join::create(model, numbered(2)));
}

TEST_F(ModelTest, ReclaimFreesValuesThatNobodyHolds) {
  const PowerSetType type = sets(4);
  const PowerSet a = set(type, {1, 3}), b = set(type, {2});
  const FieldElem owner = field("f", a.join(b));
  const Variable x = variable("x", type);
  const std::size_t before = model.size();
  EXPECT_EQ(model.reclaim(), 0U);

  const LatticeValue kept = a.meet(b);
  a.join(b);
  const uuid dropped = a.join(b)->getUuid();
  EXPECT_TRUE(model.find(dropped));
  EXPECT_EQ(model.reclaim(), 2U);
  EXPECT_FALSE(model.find(dropped));
  EXPECT_EQ(model.size(), before + 1);
  EXPECT_TRUE(kept && owner->hasValue() && x->hasType() && type->hasTop());

  owner->setValue({});
  EXPECT_EQ(model.reclaim(), 1U);

  values.createArray({}, {1, 2}, {{}, {}})->getValues()[2]->convertToProxy();
  EXPECT_EQ(model.reclaim(), 2U) << "without the proxy";
  EXPECT_EQ(model.size(), before);

  LatticeType layers = types.createPowerSetType("", 3);
  for (int layer = 0; layer < 3; ++layer) layers = types.createArrayType("", layers, 2);
  const std::size_t made = model.size() - before;
  layers = {};
  EXPECT_EQ(model.reclaim(), made);

  Struct record = values.createStruct({}, {"f"}, {{}});
  {
    const Transaction undone(model);
    record.ref("f").assign(a.clone());
  }
  EXPECT_FALSE(record.at("f"));
  record = {};
  EXPECT_EQ(model.reclaim(), 2U) << "although its field refers to what the rollback has ended";
}

TEST_F(ModelTest, WhatATransactionHasToKeepRefersToNothingFreed) {
  FieldElem part = field("a");
  const uuid id = part->getUuid();
  {
    const Transaction undone(model);
    auto type = make<StructType>();
    auto top = make<Struct>();
    top->setType(type);
    top->getValues().insert(part);
    type->setTop(top);
    const uuid kept = top->getUuid();
    part = {}, type = {}, top = {};
    model.reclaim();
    EXPECT_FALSE(Struct(model.find(kept))->hasType());
  }
  EXPECT_TRUE(model.find(id) && !model.find(id)->getContainer());
}

/// The order is closed up, and an element gets the place of the one that has just referred.
TEST_F(ModelTest, ReclaimForgetsNoReference) {
  const PowerSetType type = sets(4);
  const Variable target = variable("x", type);
  constexpr int gap = 8;
  const auto drop = [&](int count) {
    while (count-- > 0) set(type, {1});
  };
  drop(gap);
  const auto first = make<Equation>();
  std::vector<Equation> others;
  for (int i = 0; i < gap; ++i) others.push_back(make<Equation>());
  drop(4 * gap);
  first->setLhs(target);
  const Equation second = others.back();
  const std::uint32_t place = first->place();
  model.reclaim();
  ASSERT_EQ(second->place(), place);

  second->setLhs(target);
  target->destroy();
  EXPECT_EQ(first->getLhs(), LExpression());
  EXPECT_EQ(second->getLhs(), LExpression());
}

/// What refers to what is collected anew now and then, in the midst of a change.
TEST_F(ModelTest, ManyChangesForgetNoReference) {
  const auto other = make<Variable>();
  const auto first = make<Equation>(), last = make<Equation>();
  last->setRhs(other);
  for (int change = 0; change < 10000; ++change) {
    const auto target = make<Variable>();
    if (change % 3 == 0) first->setRhs(target);  // so that it is another one of these each time
    first->setLhs(target);
    last->setLhs(target);
    target->destroy();
    ASSERT_EQ(first->getLhs(), LExpression()) << change;
    ASSERT_EQ(last->getLhs(), LExpression()) << change;
  }
}

TEST_F(ModelTest, ReclaimFreesAnonymousTypesWithTheirValues) {
  const auto array = types.createArrayType("A", types.createArrayType("B", sets(5), 2), 3);
  const std::size_t before = model.size();
  Array{Array{Array{array->getTop()}.at(2, 3)}.at(1)}.at(1, 2);
  PowerSet{Array{Array{array->getTop()}.at(1)}.at(1)}.at(2, 3);
  LatticeType anonymous = types.createPowerSetType("", 1);
  LatticeValue part = Array{array->getBottom()}.at(1, 2);
  EXPECT_GT(model.reclaim(), 0U);
  EXPECT_TRUE(anonymous->hasTop() && part->getType()->hasBottom());
  EXPECT_EQ(Array{part}.at(2)->getType()->getName(), "B");

  anonymous = LatticeType();
  part = LatticeValue();
  model.reclaim();
  EXPECT_EQ(model.size(), before);
}

}  // namespace
}  // namespace torvan::datamodel
