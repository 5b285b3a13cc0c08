#include <array>
#include <list>
#include <optional>
#include <random>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/Diary.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using orb::zero::CollisionResolution;

struct Conditions {
  bool reclaims = false, keepsHistory = false, listens = false;
};

/// Does random things to a small model. Every savepoint remembers what its rollback has to restore,
/// and with a history every step what it led to.
class RandomChanges {
 public:
  RandomChanges(unsigned seed, const Conditions& conditions)
      : random_(seed), conditions_(conditions) {
    if (conditions_.keepsHistory) model_.setHistoryLimit(1000);
    if (conditions_.listens) model_.addListener(std::make_shared<Diary>());
    for (int i = 0; i < 20; ++i) create();
    remember();
  }

  void step() {
    const std::size_t choice = below(30);
    if (choice < 4)
      begin();
    else if (choice < 9)
      end(choice < 6);
    else if (choice < 12)
      create();
    else if (choice < 14)
      destroy();
    else if (choice < 15 && conditions_.reclaims)
      model_.reclaim();
    else if (choice < 17 && open_.empty())
      walk(below(6));
    else
      change();
    open_.empty() ? remember() : expectOldValues();
    expectConsistent(model_);
  }
  void finish() {
    while (!open_.empty()) end(false);
    remember();
    for (int i = 0; i < 20; ++i) walk(below(40));
    const std::string before = snapshot(model_);
    model_.setHistoryLimit(0);
    EXPECT_EQ(snapshot(model_), before);
    expectConsistent(model_);
  }

 private:
  struct Savepoint {
    explicit Savepoint(const Model& model) : before(snapshot(model)), transaction(model) {}
    std::string before;
    Transaction transaction;
  };

  std::size_t below(std::size_t end) { return random_() % end; }
  std::string name() { return std::string(1, static_cast<char>('a' + below(4))); }

  /// A random element of the class, or an empty handle.
  template <class X>
  X any() {
    std::vector<ModelElement> all;
    for (const ModelElement element : model_.elements(X::metaClass())) all.push_back(element);
    return all.empty() || below(20) == 0 ? X() : X{all[below(all.size())]};
  }

  /// One more state, if there is one more step; else nothing has changed.
  void remember() {
    if (!conditions_.keepsHistory) return;
    const std::size_t steps = model_.undoSteps();
    if (steps == at_ && !states_.empty()) {
      EXPECT_EQ(snapshot(model_), states_[at_]);
    } else {
      states_.resize(std::min(states_.size(), at_ + 1));
      states_.resize(steps + 1);
      states_[at_ = steps] = snapshot(model_);
    }
  }
  /// Undoes or redoes some steps, several of which may have no state of their own.
  void walk(std::size_t length) {
    const bool isBack = below(2) == 0;
    for (; length > 0 && (isBack ? model_.undo() : model_.redo()); --length) {
      at_ = model_.undoSteps();
      if (!states_[at_]) states_[at_] = snapshot(model_);
      ASSERT_EQ(snapshot(model_), states_[at_]);
      expectConsistent(model_);
    }
  }

  /// Before the outermost transaction.
  void rememberValues() {
    old_.clear();
    for (const ModelElement element : model_.elements())
      for (const Property* property : element->getMetaClass().all)
        old_.push_back({element, property, element->getPropertyValue(*property)});
  }
  void expectOldValues() {
    for (const auto& [element, property, value] : old_) {
      EXPECT_TRUE(!element || element->getOldValue(*property) == value);
    }
  }

  void begin() {
    if (open_.empty()) rememberValues();
    open_.emplace_back(model_);
  }
  void end(bool commit) {
    if (open_.empty()) return;
    const std::string before = std::move(open_.back().before);
    if (commit) open_.back().transaction.commit();
    open_.pop_back();
    if (!commit) {
      EXPECT_EQ(snapshot(model_), before);
    }
  }

  template <class X>
  static ModelElement make(const Model& model) {
    return X::create(model, model.newUuid());
  }
  void create() {
    static constexpr ModelElement (*makers[])(const Model&) = {
        make<StructType>,   make<FieldType>, make<FieldType>, make<Struct>,   make<FieldElem>,
        make<FieldElem>,    make<System>,    make<Equation>,  make<Equation>, make<Variable>,
        make<PowerSetType>, make<PowerSet>,  make<Join>};
    const ModelElement made = makers[below(std::size(makers))](model_);
    held_[below(held_.size())] = made;
    if (made->getMetaClass() == FieldElem::metaClass()) FieldElem(made)->basicSetName(name());
    if (made->getMetaClass() == FieldType::metaClass()) FieldType(made)->setName(name());
  }
  void destroy() {
    if (const ModelElement element = any<ModelElement>()) element->destroy();
  }

  void change() {
    try {
      changes_[below(std::size(changes_))](*this);
    } catch (const orb::zero::Exception&) {
      // A refusal, such as of a key that is taken, has to leave everything as it was.
    }
  }
  void changeTerm(const Term& term) {
    term->setType(any<LatticeType>());
    const auto& type = term->getMetaClass();
    if (type == Variable::metaClass()) Variable(term)->setName(name());
    if (type == PowerSet::metaClass()) PowerSet(term)->setValue(BitSet(below(130), random_()));
  }
  void changeLatticeType(const LatticeType& type) {
    type->setNumElems(static_cast<std::uint16_t>(below(3)));
    type->setTop(any<LatticeValue>());
    if (!(type->getMetaClass() == PowerSetType::metaClass())) return;
    auto& universe = PowerSetType(type)->getUniverse();
    universe.insert(below(universe.size() + 1), name());
    if (below(2)) universe.erase(below(universe.size()));
  }
  CollisionResolution resolution() { return static_cast<CollisionResolution>(below(3)); }

  using Self = RandomChanges;
  static constexpr void (*changes_[])(Self&) = {
      [](Self& r) { r.changeTerm(r.any<Term>()); },
      [](Self& r) { r.changeLatticeType(r.any<LatticeType>()); },
      [](Self& r) { r.any<FieldType>()->setName(r.name()); },
      [](Self& r) { r.any<FieldType>()->setElemType(r.any<LatticeType>()); },
      [](Self& r) { r.any<StructType>()->getFields().erase(r.name()); },
      [](Self& r) { r.any<StructType>()->getFields().insert(r.any<FieldType>(), r.resolution()); },
      [](Self& r) { r.any<FieldElem>()->setValue(r.any<LatticeValue>()); },
      [](Self& r) { r.any<Struct>()->getValues().insert(r.any<FieldElem>(), r.resolution()); },
      [](Self& r) { r.any<Equation>()->setRhs(r.any<Term>()); },
      [](Self& r) { r.any<System>()->getEquations().add(r.any<Equation>()); },
      [](Self& r) { r.any<System>()->getEquations().set(r.below(4), r.any<Equation>()); },
      [](Self& r) { r.any<System>()->getEquations().remove(r.any<Equation>()); },
      [](Self& r) { r.any<Join>()->getOperands().addEmpty(); },
      [](Self& r) { r.any<Join>()->getOperands().insert(r.below(4), r.any<Term>()); },
      [](Self& r) { r.any<Join>()->getOperands().set(r.below(4), r.any<Term>()); },
      [](Self& r) { r.any<Join>()->getOperands().erase(r.below(4)); },
  };

  struct OldValue {
    ModelElement element;
    const Property* property;
    orb::zero::Value value;
  };

  std::mt19937 random_;
  const Conditions conditions_;
  const Model model_ = Model::create();
  std::array<ModelElement, 4> held_;  // some of all elements are held from outside
  std::list<Savepoint> open_;
  std::vector<OldValue> old_;
  std::vector<std::optional<std::string>> states_;  // by the number of steps that led there
  std::size_t at_ = 0;
};

void expectEverythingRestored(const Conditions& conditions) {
  for (unsigned seed = 0; seed < 200 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomChanges changes(seed, conditions);
    for (int step = 0; step < 60; ++step) changes.step();
    changes.finish();
  }
}

TEST(RandomTransactionTest, ByRollback) { expectEverythingRestored({}); }
TEST(RandomTransactionTest, ByRollbackAndReclaimTakesNothing) {
  expectEverythingRestored({.reclaims = true});
}
TEST(RandomTransactionTest, ByRollbackWithListeners) {
  expectEverythingRestored({.listens = true});
}
TEST(RandomTransactionTest, ByHistory) {
  expectEverythingRestored({.reclaims = true, .keepsHistory = true});
}
TEST(RandomTransactionTest, ByHistoryWithListeners) {
  expectEverythingRestored({.keepsHistory = true, .listens = true});
}

}  // namespace
}  // namespace torvan::datamodel
