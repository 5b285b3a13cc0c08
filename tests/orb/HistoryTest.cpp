#include <algorithm>
#include <random>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/Diary.h"

namespace torvan::datamodel {
namespace {

using Lines = std::vector<std::string>;

class HistoryTest : public SessionTest {
 protected:
  HistoryTest() {
    for (const char* name : {"a", "b", "c", "d"}) {
      equations.push_back(make<Equation>());
      equations.back()->setLhs(variable(name, p));
    }
    system = systemOf(equations);
  }

  PowerSetType p = sets(2);
  StructType record = types.createStructType("R", {"f", "g"}, {p, p});
  System system;
  std::vector<Equation> equations;
  Variable x = variable("x", p);
};

TEST_F(HistoryTest, TellsListenersOfBothWays) {
  const auto diary = std::make_shared<Diary>();
  model.setHistoryLimit(9);
  inTransaction([&] {
    const FieldType f = record->getFields()["f"];
    f->setName("h");
    f->setName("i");
    record->getFields()["g"]->setName("f");
    x->setName("y");
    Transaction inner(model);
    x->setName("z");
    x->setType(record);
    p->setName("Q");
    inner.commit();
    p->setName("P");
  });
  inTransaction([&] { equations[0]->destroy(), x->destroy(); });
  variable("new", p);
  while (model.undo()) continue;
  model.addListener(diary);
  while (model.redo()) continue;
  EXPECT_EQ(diary->news(),
            (Lines{"i.name:f>i R.fields:[i,f]>[f,i] f.name:g>f z.type:P>R z.name:x>z",
                   "-Equation -Variable System.equations:[gone,Equation,Equation,"
                   "Equation]>[Equation,Equation,Equation]",
                   "+new"}));
  while (model.undo()) continue;
  EXPECT_EQ(diary->news(),
            (Lines{"-Variable",
                   "+z +Equation System.equations:[Equation,Equation,Equation]>[Equation,Equation,"
                   "Equation,Equation]",
                   "f.name:i>f R.fields:[g,f]>[f,g] g.name:f>g x.type:R>P x.name:z>x"}));
  variable("new")->convertToProxy();
  while (model.undo()) continue;
  EXPECT_EQ(diary->news(), (Lines{"+new", "-Variable", "+new", "-Variable"}));
}

TEST_F(HistoryTest, BringsBackWhetherAValueWasGiven) {
  const Variable y = make<Variable>();
  model.setHistoryLimit(1);
  inTransaction([&] {
    inTransaction([&] { y->setName("b"); });
    inTransaction([&] { y->setPropertyValue(Variable::name(), {}); });
    y->setType(p);
  });
  EXPECT_TRUE(model.undo() && !y->hasName());
  EXPECT_TRUE(model.redo() && !y->hasName());
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
  auto& places = system->getEquations();
  for (unsigned seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const Transaction transaction(model);
    std::vector<Equation> expected = equations;
    for (int i = 0; i < 60; ++i) {
      const std::size_t fromEnd = std::min<std::size_t>(expected.size(), random() % 4);
      const auto place = expected.end() - static_cast<std::ptrdiff_t>(fromEnd);
      if (fromEnd == 0 || random() % 3 == 0) {
        places.add(expected.emplace_back(make<Equation>()));
      } else if (random() % 5 == 0) {
        *place = make<Equation>();
        places.set(expected.size() - fromEnd, *place);
      } else if (random() % 2) {
        places.remove(*place);
        expected.erase(place);
      }
      if (expected.empty()) continue;
      const std::size_t asked = random() % 2 ? random() % expected.size() : expected.size() - 1;
      ASSERT_TRUE(places[asked] == expected[asked]);
    }
    ASSERT_TRUE(system->getPropertyValue(System::equations()) == orb::zero::Value(expected));
  }
  EXPECT_TRUE(system->getPropertyValue(System::equations()) == orb::zero::Value(equations));
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

}  // namespace
}  // namespace torvan::datamodel
