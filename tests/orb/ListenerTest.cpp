#include <deque>
#include <functional>
#include <stdexcept>

#include <orb/zero/ModelConstellation.h>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/Diary.h"

namespace torvan::datamodel {
namespace {

using Lines = std::vector<std::string>;

/// Does what it is told to when it is told of something.
class Reaction final : public orb::zero::ModelListener {
 public:
  explicit Reaction(std::function<void(const orb::zero::ModelChanges&)> reaction)
      : reaction_(std::move(reaction)) {}
  void changed(const orb::zero::ModelChanges& changes) override { reaction_(changes); }

 private:
  std::function<void(const orb::zero::ModelChanges&)> reaction_;
};

class ListenerTest : public SessionTest {
 protected:
  /// From now on.
  void listen() { model.addListener(diary); }
  template <class Changes>
  Lines newsOf(Changes changes) {
    inTransaction(changes);
    return diary->news();
  }

  std::shared_ptr<Diary> diary = std::make_shared<Diary>();
  PowerSetType p = sets(1);
  Variable x = variable("x");
};

TEST_F(ListenerTest, OutermostCommitIsToldAsOne) {
  const Variable gone = variable("gone"), other = variable("other", p);
  listen();
  EXPECT_EQ(newsOf([&] {
              x->setName("y");
              Transaction kept(model);
              x->setName("z");
              x->setType(p);
              kept.commit();
              {
                const Transaction dropped(model);
                x->setName("lost");
                other->setName("lost");
                variable("lost");
                p->destroy();
              }
              variable("a")->setName("b");
              variable("brief")->destroy();
              gone->destroy();
              other->setType({});
              other->setType(p);
              EXPECT_TRUE(diary->lines.empty());
            }),
            Lines{"+b -Variable z.type:none>P z.name:x>z"});
  EXPECT_EQ(newsOf([&] {
              variable("brief")->destroy();
              x->setName("w");
              x->setName("z");
            }),
            Lines{});
  {
    const Transaction dropped(model);
    x->destroy();
  }
  EXPECT_EQ(diary->news(), Lines{});
}

TEST_F(ListenerTest, EveryChangeOutsideOfATransactionIsToldOnce) {
  const Join join = expressions.createJoin({x});
  listen();
  const auto newsNow = [&](auto change) { return change(), diary->news(); };
  EXPECT_EQ(newsNow([&] { x->setName("x"); }), Lines{});
  EXPECT_EQ(newsNow([&] { make<PowerSetType>()->setNumElems(0); }),
            (Lines{"+PowerSetType", "PowerSetType.numElems:unset>0"}));
  EXPECT_EQ(newsNow([&] { p->getTop().join(p->getBottom()); }), Lines{"+PowerSet"});
  EXPECT_EQ(newsNow([&] { types.createArrayType("A", p, 0); }),  // not changed as well
            Lines{"+A +Array +Array"});
  EXPECT_EQ(newsNow([&] { failureOf([&] { join->getOperands().add({}); }); }), Lines{});
}

TEST_F(ListenerTest, DestructionIsToldAtWhatReferredToIt) {
  const Join join = expressions.createJoin({x, variable("y", p), x});
  const System system = systemOf({make<Equation>()});
  listen();
  x->destroy();
  EXPECT_EQ(diary->news(), Lines{"-Variable Join.operands:[gone,y,gone]>[y]"});
  p->destroy();
  EXPECT_EQ(diary->news(), Lines{"-PowerSetType PowerSet.type:gone>none PowerSet.type:gone>none "
                                 "y.type:gone>none"});
  system->destroy();
  EXPECT_EQ(diary->news(), (Lines{"-System -Equation"}));
}

TEST_F(ListenerTest, CollectionsAreToldWithWhatWasThere) {
  const StructType type = types.createStructType("S", {"a", "b"}, {p, p}), one = make<StructType>();
  const FieldType a = type->getFields()["a"], single = fieldType("c");
  one->getFields().insert(single);
  one->setName("one");
  const auto again = [](const StructType& owner, const FieldType& field) {
    owner->getFields().erase(field->getName());
    owner->getFields().insert(field);
  };
  listen();
  EXPECT_EQ(newsOf([&] { a->setName("z"); }), (Lines{"z.name:a>z S.fields:[z,b]>[b,z]"}));
  EXPECT_EQ(newsOf([&] { one->getFields().insert(a); }),
            (Lines{"S.fields:[b,z]>[b] one.fields:[c]>[c,z]"}));
  EXPECT_EQ(newsOf([&] { again(type, type->getFields()["b"]); }), Lines{});  // the only one
  EXPECT_EQ(newsOf([&] { again(one, single); }), Lines{"one.fields:[c,z]>[c,z]"});
  EXPECT_EQ(newsOf([&] {
              p->getUniverse().add("u");
              p->getUniverse().insert(0, "v");
              p->getUniverse().erase(1);
            }),
            Lines{"P.universe:[]>[v]"});
}

TEST_F(ListenerTest, ListenersChangeTheModelAndFailWithoutHarm) {
  const auto late = std::make_shared<Diary>();
  Join join = expressions.createJoin({});
  model.addListener(std::make_shared<Reaction>([](auto&) { throw std::runtime_error("no"); }));
  listen();
  model.addListener(std::make_shared<Reaction>([&](const orb::zero::ModelChanges& changes) {
    if (x->getName() == "y") x->setName("z");
    for (const ModelElement& made : changes.created) made->destroy();
    if (join->hasOperands() && x) x->destroy();
  }));
  model.addListener(late);
  x->setName("y");
  EXPECT_EQ(diary->news(), (Lines{"y.name:x>y", "z.name:y>z"}));
  EXPECT_EQ(late->news(), (Lines{"z.name:x>y", "z.name:y>z"}));
  EXPECT_FALSE(variable("short") || make<Variable>());
  diary->news();
  join->getOperands().add(x);
  EXPECT_EQ(diary->news().back(), "-Variable Join.operands:[gone]>[]");
  EXPECT_TRUE(!x && join->getOperands().empty());
  model.removeListener(diary);
  diary->news();
  late->news();
  p->setName("Q");
  EXPECT_TRUE(diary->news().empty() && late->news() == Lines{"Q.name:P>Q"});
}

TEST_F(ListenerTest, QueueOfOnesOwnRunsLater) {
  struct Later final : orb::zero::WorkQueue {
    void post(std::function<void()> work) override { waiting.push_back(std::move(work)); }
    std::deque<std::function<void()>> waiting;
  };
  const auto queue = std::make_shared<Later>();
  const Model own = Model::create(orb::zero::uuid{}, {}, [&](auto*) { return queue; });
  const Variable y = Variable::create(own, own.newUuid());
  own.addListener(diary);
  y->setName("a");
  y->setName("b");
  own.removeListener(diary);  // was there when it happened
  y->setName("c");
  EXPECT_TRUE(diary->lines.empty());
  for (; !queue->waiting.empty(); queue->waiting.pop_front()) queue->waiting.front()();
  EXPECT_EQ(diary->news(), (Lines{"c.name:unset>a", "c.name:a>b"}));
}

TEST_F(ListenerTest, OperationsTellTheFirstOfTheirErrors) {
  struct Full final : orb::zero::WorkQueue {
    void post(std::function<void()>) override { throw std::runtime_error("full"); }
  };
  const Model own =
      Model::create(orb::zero::uuid{}, {}, [](auto*) { return std::make_shared<Full>(); });
  own.addListener(diary);
  EXPECT_RAISES(ValueFactory(own).createStruct({}, {"a", "a"}, {{}, {}}), "UniquenessConstraint");
}

TEST_F(ListenerTest, WhatItTakesAwayAtOnceCannotBeReferredTo) {
  const Struct record = make<Struct>();
  const Array array = make<Array>();
  model.addListener(std::make_shared<Reaction>([&](auto&) {
    record->getValues().clear();
    array->getValues().clear();
  }));
  EXPECT_RAISES(record.ref("a"), castFailure<FieldElem>());
  EXPECT_RAISES(array.ref(1, 2), castFailure<ArrayElem>());
}

}  // namespace
}  // namespace torvan::datamodel
