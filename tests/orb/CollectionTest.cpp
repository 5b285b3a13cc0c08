#include <map>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using orb::zero::CollisionResolution;
using CollectionTest = SessionTest;

TEST_F(CollectionTest, MapRefusesInOrderAndChangesNothing) {
  Session foreign;
  const Struct record = make<Struct>();
  record->getValues().insert(field("a"));
  const auto before = snapshot(model);
  const auto insert = [&](const ModelElement& element) {
    return failureOf([&] { record->getValues().insert(element); });
  };
  const FieldElem gone = FieldElem::create(foreign.model(), foreign.model().newUuid());
  gone->destroy();
  FieldElem::Builder duplicate(foreign.model());
  duplicate->basicSetName("a");

  EXPECT_EQ(insert({}), "CannotAddNonExistentObject");
  EXPECT_EQ(insert(gone), "CannotAddNonExistentObject");
  EXPECT_EQ(insert(Join::create(foreign.model(), model.newUuid())),
            "CannotAddIncompatibleTypes(torvan.datamodel.Join,torvan.datamodel.FieldElem)");
  EXPECT_EQ(insert(duplicate.create()), "CannotCreateCrossModelAssociation");
  EXPECT_EQ(snapshot(model), before);
  EXPECT_EQ(insert(field("a")), "UniquenessConstraint");
  EXPECT_EQ(record->getValues().size(), 1U);
}

TEST_F(CollectionTest, SequencesRefuseInOrderAndChangeNothing) {
  Session foreign;
  const Variable x = variable("x"), gone = variable("y");
  const Join join = expressions.createJoin({x});
  gone->destroy();
  const System system = make<System>();
  const Equation equation = make<Equation>();
  system->getEquations().add(equation);
  const auto before = snapshot(model);
  const auto alien = foreign.expressionFactory()->createVariable({}, "x");
  const auto alienEquation = Equation::create(foreign.model(), model.newUuid());

  const auto refusals = [&](const ModelElement& element) {
    const std::string first = failureOf([&] { join->getOperands().add(element); });
    EXPECT_EQ(failureOf([&] { join->getOperands().insert(0, element); }), first);
    EXPECT_EQ(failureOf([&] { join->getOperands().set(0, element); }), first);
    const std::string second = failureOf([&] { system->getEquations().add(element); });
    EXPECT_EQ(failureOf([&] { system->getEquations().set(0, element); }), second);
    return first + ' ' + second;
  };
  EXPECT_EQ(refusals({}), "CannotAddNonExistentObject CannotAddNonExistentObject");
  EXPECT_EQ(refusals(gone), "CannotAddNonExistentObject CannotAddNonExistentObject");
  EXPECT_EQ(refusals(alien),
            "CannotCreateCrossModelAssociation "
            "CannotAddIncompatibleTypes(torvan.datamodel.Variable,"
            "torvan.datamodel.Equation)");
  EXPECT_EQ(refusals(alienEquation),
            "CannotAddIncompatibleTypes(torvan.datamodel.Equation,torvan.datamodel.Term) "
            "CannotCreateCrossModelAssociation");
  EXPECT_EQ(failureOf([&] { join->getOperands().set(1, x); }), "InvalidValue");
  EXPECT_EQ(failureOf([&] { join->getOperands().insert(2, x); }), "InvalidValue");
  EXPECT_EQ(failureOf([&] { join->getOperands().erase(1); }), "InvalidValue");
  EXPECT_EQ(failureOf([&] { system->getEquations()[1]; }), "InvalidValue");
  EXPECT_EQ(failureOf([&] { system->getEquations().set(1, equation); }), "InvalidValue");
  EXPECT_EQ(snapshot(model), before);
}

TEST_F(CollectionTest, CollisionIsResolvedAsAsked) {
  const Struct record = make<Struct>(), other = make<Struct>();
  auto& fields = record->getValues();
  const FieldElem first = field("a"), second = field("a");
  fields.insert(first);
  other->getValues().insert(second);

  fields.insert(second, CollisionResolution::Keep);
  EXPECT_TRUE(fields["a"] == first);
  EXPECT_TRUE(second->getContainer() == other);
  fields.insert(first, CollisionResolution::Report);
  fields.insert(first, CollisionResolution::Replace);
  EXPECT_TRUE(fields["a"] == first);
  fields.insert(second, CollisionResolution::Replace);
  EXPECT_TRUE(fields["a"] == second);
  EXPECT_TRUE(first && !first->getContainer());
  EXPECT_TRUE(other->getValues().empty());
  expectConsistent(model);
}

TEST_F(CollectionTest, RenamingMovesTheKey) {
  const StructType type = types.createStructType("S", {"a", "b"}, {sets(1), sets(1)});
  const FieldType a = type->getFields()["a"];
  a->setName("c");
  EXPECT_TRUE(type->getFields()["c"] == a);
  EXPECT_FALSE(type->getFields().contains("a"));
  EXPECT_TRUE(Struct(type->getTop())->getValues().contains("a"));  // values keep their names
  EXPECT_EQ(failureOf([&] { a->setName("b"); }), "UniquenessConstraint");
  EXPECT_EQ(a->getName(), "c");
  const FieldType unnamed = make<FieldType>();
  type->getFields().insert(unnamed);
  unnamed->setName("");  // gives the name that it is stored under
  EXPECT_TRUE(unnamed->hasName());
  EXPECT_TRUE(type->getFields()[""] == unnamed);
}

TEST_F(CollectionTest, OwnedSequenceLosesChildrenWhileIterated) {
  const System system = make<System>();
  auto& equations = system->getEquations();
  std::vector<Equation> all;
  for (int i = 0; i < 4; ++i) equations.add(all.emplace_back(make<Equation>()));
  std::vector<Equation> visited;
  for (const Equation& equation : equations) {
    visited.push_back(equation);
    if (!(equation == all[1])) continue;
    equations.remove(all[0]);
    equations.remove(all[2]);
  }
  EXPECT_EQ(visited, (std::vector{all[0], all[1], all[3]}));
  EXPECT_TRUE(equations[0] == all[1] && equations[1] == all[3]);
}

TEST_F(CollectionTest, OwnedSequenceReplaces) {
  const System system = make<System>(), other = make<System>();
  auto& equations = system->getEquations();
  const Equation a = make<Equation>(), b = make<Equation>(), c = make<Equation>();
  equations.add(a);
  equations.add(b);
  other->getEquations().add(c);
  equations.set(0, a);
  equations.add(a);  // is there already and stays
  EXPECT_EQ(equations.size(), 2U);
  EXPECT_EQ(failureOf([&] { equations.set(0, b); }), "CannotAddSecondObject");
  equations.set(0, c);
  EXPECT_TRUE(equations[0] == c && equations[1] == b);
  EXPECT_TRUE(a && !a->getContainer());
  EXPECT_TRUE(other->getEquations().empty());
  expectConsistent(model);
}

TEST_F(CollectionTest, SettersRefuseOtherModels) {
  Session foreign;
  const Variable x = variable("x", sets(1));
  const auto before = snapshot(model);
  const auto alien = foreign.typeFactory()->createPowerSetType("P", 1);
  EXPECT_EQ(failureOf([&] { x->setType(alien); }), "CannotCreateCrossModelAssociation");
  EXPECT_EQ(snapshot(model), before);
  const LatticeType gone = sets(2);
  gone->destroy();
  x->setType(gone);  // is as good as none
  EXPECT_FALSE(x->hasType());
}

}  // namespace
}  // namespace torvan::datamodel
