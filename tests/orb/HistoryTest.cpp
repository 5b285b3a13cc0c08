#include <functional>
#include <random>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/Diary.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using Lines = std::vector<std::string>;

class HistoryTest : public SessionTest {
 protected:
  HistoryTest() {
    for (const char* name : {"a", "b", "c", "d"}) {
      equations.push_back(make<Equation>());
      equations.back()->setLhs(variable(name, p));
      system->getEquations().add(equations.back());
    }
  }
  template <class Changes>
  void inTransaction(Changes changes) {
    Transaction transaction(model);
    changes();
    transaction.commit();
  }
  /// Makes the changes one step each, and then goes to and fro between the states they led to.
  void expectReturns(const std::vector<std::function<void()>>& steps) {
    model.setHistoryLimit(steps.size());
    std::vector<std::string> states = {snapshot(model)};
    for (const auto& step : steps) {
      inTransaction(step);
      states.push_back(snapshot(model));
      ASSERT_EQ(model.undoSteps() + 1, states.size());
    }
    std::mt19937 random(1);
    for (int i = 0; i < 100; ++i) {
      const std::size_t at = model.undoSteps();
      if (random() % 2)
        EXPECT_EQ(model.undo(), at > 0);
      else
        EXPECT_EQ(model.redo(), at + 1 < states.size());
      ASSERT_EQ(snapshot(model), states[model.undoSteps()]);
      expectConsistent(model);
    }
  }

  PowerSetType p = sets(2);
  StructType record = types.createStructType("R", {"f", "g"}, {p, p});
  System system = make<System>(), other = make<System>();
  std::vector<Equation> equations;
  Variable x = variable("x", p);
};

TEST_F(HistoryTest, BringsBackEveryKindOfChange) {
  const Join join = expressions.createJoin({x, variable("y"), x, {}});
  const PowerSet value = set(p, {1});
  expectReturns({[&] { value->setValue(bitsOf(3, {2})), p->setNumElems(0), x->setType({}); },
                 [&] {
                   const FieldType f = record->getFields()["f"];
                   f->setName("h");
                   f->setName("i");
                   record->getFields()["g"]->setName("f");
                 },
                 [&] { other->getEquations().add(equations[1]); },
                 [&] { system->getEquations().set(0, equations[1]); },
                 [&] { other->getEquations().add(make<Equation>()); },
                 [&] {
                   join->getOperands().insert(1, value);
                   join->getOperands().erase(0);
                   join->getOperands().set(2, make<Join>());
                   p->getUniverse().add("u");
                   p->getUniverse().insert(0, "v");
                   p->getUniverse().erase(1);
                 },
                 [&] { x->destroy(), value->destroy(); },
                 [&] { values.createStruct(record, {"f"}, {p->getTop()}); },
                 [&] { record->destroy(), p->destroy(); },
                 [&] { system->destroy(), variable("brief")->destroy(), join->destroy(); }});
}

TEST_F(HistoryTest, TellsListenersOfBothWays) {
  const auto diary = std::make_shared<Diary>();
  model.addListener(diary);
  expectReturns({[&] {
                   record->getFields()["f"]->setName("h");
                   x->setName("y");
                   Transaction inner(model);
                   x->setName("z");
                   p->setName("Q");
                   inner.commit();
                   p->setName("P");
                 },
                 [&] { equations[0]->destroy(), x->destroy(); }, [&] { variable("new", p); }});
  while (model.undo()) continue;
  diary->news();
  while (model.redo()) continue;
  EXPECT_EQ(diary->news(), (Lines{"h.name:f>h R.fields:[h,g]>[g,h] z.name:x>z",
                                  "-Equation -Variable System.equations:[gone,Equation,Equation,"
                                  "Equation]>[Equation,Equation,Equation]",
                                  "+new"}));
  while (model.undo()) continue;
  EXPECT_EQ(diary->news(),
            (Lines{"-Variable",
                   "+z +Equation System.equations:[Equation,Equation,Equation]>[Equation,Equation,"
                   "Equation,Equation]",
                   "f.name:h>f R.fields:[g,f]>[f,g] x.name:z>x"}));
}

TEST_F(HistoryTest, KeepsTheLatestStepsUntilSomethingElseHappens) {
  EXPECT_FALSE(model.undo() || model.redo());
  model.setHistoryLimit(2);
  for (const char* name : {"1", "2", "3"}) x->setName(name);
  EXPECT_EQ(model.undoSteps(), 2U);
  EXPECT_TRUE(model.undo() && model.undo() && !model.undo());
  EXPECT_EQ(x->getName(), "1");
  EXPECT_TRUE(model.redo());
  inTransaction([&] { x->setName("4"), x->setName("2"), variable("brief")->destroy(); });
  EXPECT_EQ(model.redoSteps(), 1U);  // nothing has changed
  x->setName("4");
  EXPECT_TRUE(model.redoSteps() == 0 && !model.redo());
  EXPECT_TRUE(model.undo());
  model.setHistoryLimit(1);
  EXPECT_TRUE(model.undoSteps() == 1 && model.redoSteps() == 1);
  {
    const Transaction transaction(model);
    for (const auto& change : std::vector<std::function<void()>>{
             [&] { model.undo(); }, [&] { model.redo(); }, [&] { model.setHistoryLimit(3); }})
      EXPECT_EQ(failureOf(change), "TransactionInProgress");
  }
  Model::Freezer::freeze(model);
  EXPECT_EQ(failureOf([&] { model.undo(); }), "CannotModifyFrozenModel");
  const auto thaw = Model::Freezer::thaw(model);
  EXPECT_TRUE(model.undo() && x->getName() == "1");
}

TEST_F(HistoryTest, StaysValidWhenAChangeCameToNothing) {
  auto& places = system->getEquations();
  model.setHistoryLimit(9);
  const std::string before = snapshot(model);
  places.remove(equations[2]);
  inTransaction([&] {
    places.remove(equations[3]);
    places.add(make<Equation>());
    places[2]->destroy();
    places.add(equations[3]);
  });
  EXPECT_EQ(model.undoSteps(), 1U);
  EXPECT_TRUE(model.undo());
  EXPECT_EQ(snapshot(model), before);
  expectConsistent(model);
}

/// While places are recorded, gaps stay, and numbers count past them.
TEST_F(HistoryTest, SequenceIsIndexedWhilePlacesAreRecorded) {
  for (unsigned seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto before = snapshot(model);
    Transaction transaction(model);
    auto& places = system->getEquations();
    std::vector<Equation> expected = equations;
    for (int i = 0; i < 60; ++i) {
      const std::size_t place =
          expected.size() - std::min<std::size_t>(expected.size(), random() % 4);
      if (place == expected.size() || random() % 3 == 0) {
        expected.push_back(make<Equation>());
        places.add(expected.back());
      } else if (random() % 5 == 0) {
        expected[place] = make<Equation>();
        places.set(place, expected[place]);
      } else if (random() % 2) {
        places.remove(expected[place]);
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(place));
      }
      if (expected.empty()) continue;
      const std::size_t asked = random() % 2 ? random() % expected.size() : expected.size() - 1;
      ASSERT_TRUE(places[asked] == expected[asked]);
    }
    ASSERT_EQ(places.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_TRUE(places[i] == expected[i]);
    transaction.rollback();
    ASSERT_EQ(snapshot(model), before);
  }
}

TEST_F(HistoryTest, HoldsWhatItMayBringBackUntilItIsOff) {
  model.setHistoryLimit(9);
  const std::size_t before = model.size();
  const orb::zero::uuid id = p->getTop().clone()->getUuid();
  x->setType(record);
  x->destroy();
  EXPECT_EQ(model.reclaim(), 0U);
  EXPECT_TRUE(model.undo() && x);
  EXPECT_TRUE(model.redo() && !x);
  EXPECT_GT(x.get()->slotCount(), 0U);
  model.setHistoryLimit(0);
  EXPECT_EQ(x.get()->slotCount(), 0U);
  EXPECT_TRUE(model.find(id));
  EXPECT_EQ(model.reclaim(), 1U);
  EXPECT_EQ(model.size(), before - 1);
  EXPECT_FALSE(model.undo() || model.find(id));

  model.setHistoryLimit(1);  // what was undone and is dropped is gone as well
  const std::uint32_t slots = p.get()->slotCount();
  const Variable made = variable("made", p);
  EXPECT_TRUE(model.undo() && !made);
  variable("another");
  EXPECT_TRUE(made.get()->slotCount() == 0 && p.get()->slotCount() == slots);
}

TEST_F(HistoryTest, OldValuesAreThoseBeforeTheOutermostTransaction) {
  const PowerSet value = set(p, {1}), unset = make<PowerSet>();
  const Join join = expressions.createJoin({x, value});
  const auto old = [](const ModelElement& element, const Property& property) {
    return Diary::textOf(element->getOldValue(property));
  };
  const auto expectOld = [&] {
    EXPECT_EQ(old(x, Variable::name()) + old(x, Variable::type()), "xP");
    EXPECT_EQ(old(value, PowerSet::value()) + ' ' + old(unset, PowerSet::value()), "01 unset");
    EXPECT_EQ(old(record, StructType::fields()), "[f,g]");
    EXPECT_EQ(old(p, PowerSetType::universe()), "[]");
    EXPECT_TRUE(system->getOldValue(System::equations()) == orb::zero::Value(equations));
    EXPECT_TRUE(join->getOldValue(Join::operands()) ==
                orb::zero::Value(std::vector<ModelElement>{x, value}));
  };
  const auto change = [&] {
    x->setName(x->getName() + '1');
    x->setType(x->hasType() ? LatticeType() : record);
    value->setValue(bitsOf(70, {3})), unset->setValue(BitSet(value->getValue().size()));
    record->getFields().erase("f");
    record->getFields().insert(fieldType(x->getName()));
    p->getUniverse().insert(0, x->getName());
    system->getEquations().remove(equations[0]);
    system->getEquations().set(0, make<Equation>());
    join->getOperands().erase(0), join->getOperands().add(x);
    expectOld();
  };
  {
    const Transaction outer(model);
    expectOld();
    change();
    Transaction kept(model);
    change();
    kept.commit();
    {
      const Transaction dropped(model);
      change();
      EXPECT_EQ(Diary::textOf(x.get()->storage()->getOldValue(Variable::name())), "x11");
      EXPECT_EQ(Diary::textOf(p.get()->storage()->getOldValue(PowerSetType::universe())),
                "[x11,x1]");
    }
    expectOld();
    change();
  }
  expectOld();
}

}  // namespace
}  // namespace torvan::datamodel
