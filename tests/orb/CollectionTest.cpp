#include <list>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using orb::zero::CollisionResolution;
using CollectionTest = SessionTest;

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
  EXPECT_RAISES(a->setName("b"), "UniquenessConstraint");
  EXPECT_EQ(a->getName(), "c");
  const FieldType unnamed = make<FieldType>();
  type->getFields().insert(unnamed);
  unnamed->setName("");  // gives the name that it is stored under
  EXPECT_TRUE(unnamed->hasName());
  EXPECT_TRUE(type->getFields()[""] == unnamed);
  unnamed->basicSetName("x");  // past its owner
  unnamed->setName("y");
  EXPECT_TRUE(type->getFields()["y"] == unnamed && !type->getFields().contains(""));
  unnamed->basicSetName("x");
  unnamed->destroy();
  EXPECT_EQ(type->getFields().size(), 2U);
  a->setPropertyValue(FieldType::name(), {});
  EXPECT_TRUE(type->getFields()[""] == a && !a->hasName());
  type->inverseRemove(sets(1), StructType::fields());  // of a class without that key
  EXPECT_EQ(type->getFields().size(), 2U);
}

/// They are looked up now and then only, as that changes how they are kept.
TEST_F(CollectionTest, ManyChildrenComeAndGoInAnyOrder) {
  using Children = std::map<std::string, FieldType>;
  std::mt19937 random(17);
  const auto below = [&](unsigned bound) { return random() % bound; };
  auto& fields = make<StructType>()->getFields();
  Children expected;
  std::list<Transaction> open;
  std::vector<Children> before;  // each of them
  const auto add = [&](const std::string& name) {
    const FieldType field = fieldType(name);
    fields.insert(field, CollisionResolution::Replace);
    expected.insert_or_assign(name, field);
  };
  const auto end = [&](bool commits) {
    if (commits)
      open.back().commit();
    else
      expected = before.back();
    open.pop_back();
    before.pop_back();
  };
  for (int step = 0; step < 3000; ++step) {
    const std::string name = std::to_string(below(400));
    const auto some = expected.lower_bound(name);
    switch (below(16)) {
      case 0:
        if (open.size() < 3) open.emplace_back(model), before.push_back(expected);
        break;
      case 1:
        if (!open.empty()) end(below(2) == 0);
        break;
      case 2:
        if (some == expected.end() || expected.contains(name)) break;
        some->second->setName(name);
        expected.emplace(name, expected.extract(some).mapped());
        break;
      case 3:
        if (below(20) == 0) fields.clear(), expected.clear();
        break;
      case 4:
        for (unsigned i = 0; i < below(30); ++i) add("9" + std::to_string(100 * step + i));
        break;
      case 5:
        ASSERT_EQ(fields.contains(name), expected.contains(name));
        break;
      default:
        if (below(3) > 0)
          add(name);
        else if (some != expected.end())
          fields.erase(some->first), expected.erase(some);
    }
    ASSERT_TRUE(std::equal(
        fields.begin(), fields.end(), expected.begin(), expected.end(),
        [](const auto& a, const auto& b) { return a.first == b.first && a.second == b.second; }))
        << step;
  }
  while (!open.empty()) end(false);
  for (const auto& [name, field] : expected) EXPECT_TRUE(fields[name] == field);
  EXPECT_EQ(fields.size(), expected.size());
  expectConsistent(model);
}

TEST_F(CollectionTest, OwnedSequenceLosesChildrenWhileIterated) {
  const std::vector all{make<Equation>(), make<Equation>(), make<Equation>(), make<Equation>()};
  const System system = systemOf(all);
  auto& equations = system->getEquations();
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

TEST_F(CollectionTest, OwnedSequencesAreAskedForAnyPlace) {
  std::mt19937 random(5);
  const auto below = [&](std::size_t bound) { return random() % bound; };
  const System system = make<System>();
  auto& equations = system->getEquations();
  std::vector<Equation> expected, before;
  std::optional<Transaction> open;
  for (int step = 0; step < 5000; ++step) {
    const std::size_t place = expected.empty() ? 0 : below(expected.size());
    const auto kind = below(100);
    if (kind == 0 && !open) {
      open.emplace(model);
      before = expected;
    } else if (kind < 2 && open) {
      below(2) == 0 ? open->commit() : void(expected = before);
      open.reset();
    } else if (kind < 40 || expected.empty()) {
      equations.add(expected.emplace_back(make<Equation>()));
    } else if (kind < 75) {
      equations.remove(equations[kind < 60 ? place : 0]);
      expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(kind < 60 ? place : 0));
    } else if (kind < 80) {
      equations.set(place, expected[place] = make<Equation>());
    }
    ASSERT_EQ(equations.size(), expected.size());
    ASSERT_TRUE(expected.empty() || *equations.begin() == expected.front());
    for (std::size_t at = below(expected.size() + 1); at-- > 0 && below(4) > 0;)
      ASSERT_TRUE(equations[at] == expected[at]) << step;
  }
  expectConsistent(model);
}

TEST_F(CollectionTest, OwnedSequenceReplaces) {
  const Equation a = make<Equation>(), b = make<Equation>(), c = make<Equation>();
  const System system = systemOf({a, b}), other = systemOf({c});
  auto& equations = system->getEquations();
  equations.set(0, a);
  equations.add(a);  // is there already and stays
  EXPECT_EQ(equations.size(), 2U);
  EXPECT_RAISES(equations.set(0, b), "CannotAddSecondObject");
  equations.set(0, *other->getEquations().begin());  // the slot that c leaves
  EXPECT_TRUE(equations[0] == c && equations[1] == b);
  EXPECT_TRUE(a && !a->getContainer());
  EXPECT_TRUE(other->getEquations().empty());
  expectConsistent(model);
}

TEST_F(CollectionTest, SetterTakesADestroyedElementForNone) {
  const Variable x = variable("x", sets(1));
  const LatticeType gone = sets(2);
  gone->destroy();
  x->setType(gone);
  EXPECT_FALSE(x->hasType());
}

}  // namespace
}  // namespace torvan::datamodel
