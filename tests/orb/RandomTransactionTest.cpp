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
constexpr auto keep = orb::zero::ProxyTag::Keep;

struct Conditions {
  bool reclaims = false, keepsHistory = false, listens = false;
  int elements = 20, references = 0;  // at first
};

/// Does random things to a model. Every savepoint remembers what its rollback has to restore,
/// and with a history every step what it led to.
class RandomChanges {
 public:
  RandomChanges(unsigned seed, const Conditions& conditions)
      : random_(seed), conditions_(conditions) {
    if (conditions_.keepsHistory) model_.setHistoryLimit(1000);
    if (conditions_.listens) model_.addListener(std::make_shared<Diary>());
    for (int i = 0; i < conditions_.elements; ++i) create();
    for (int i = 0; i < conditions_.references; ++i) attempt([](Self& r) { r.refer(); });
    remember();
  }

  void step() {
    const std::size_t choice = below(30);
    if (choice < 4)
      begin();
    else if (choice < 9)
      end(choice < 6);
    else if (choice < 12)
      for (std::size_t i = few(); i > 0; --i) create();
    else if (choice < 14)
      for (std::size_t i = few(); i > 0; --i) destroy();
    else if (choice < 15 && conditions_.reclaims)
      model_.reclaim();
    else if (choice < 17 && open_.empty())
      walk(below(6));
    else
      change();
    open_.empty() ? remember() : expectOldValues();
    for (const ModelElement& each : standIns_)
      if (each) expectOwner(each);
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
  using Self = RandomChanges;

  struct Savepoint {
    explicit Savepoint(const Model& model) : before(snapshot(model)), transaction(model) {}
    std::string before;
    Transaction transaction;
  };

  std::size_t below(std::size_t end) { return random_() % end; }
  std::size_t few() { return below(2 + model_.size() / 2); }
  std::string name() { return std::string(1, static_cast<char>('a' + below(4))); }

  /// A random element of the class, often the oldest one, or an empty handle.
  ModelElement any(const meta::ClassInfo& type) {
    std::vector<ModelElement> all;
    for (const ModelElement element : model_.elements(type)) all.push_back(element);
    if (all.empty() || below(20) == 0) return {};
    return all[below(4) ? below(all.size()) : 0];
  }
  template <class X>
  X any() {
    return X{any(X::metaClass())};
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
        old_.push_back({element, property, element->getPropertyValue(*property, keep)});
  }
  void expectOldValues() {
    for (const auto& [element, property, value] : old_) {
      EXPECT_TRUE(!element || element->getOldValue(*property, keep) == value);
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

  void create() {
    static constexpr const meta::ClassInfo& (*classes[])() = {
        StructType::metaClass,   FieldType::metaClass, Struct::metaClass,
        FieldElem::metaClass,    FieldElem::metaClass, System::metaClass,
        Equation::metaClass,     Equation::metaClass,  Variable::metaClass,
        PowerSetType::metaClass, PowerSet::metaClass,  Join::metaClass,
        ArrayType::metaClass,    ArrayElem::metaClass, Conditional::metaClass,
        Meet::metaClass,         StructRef::metaClass, IndexRef::metaClass,
        Prune::metaClass,        Array::metaClass};
    const ModelElement made =
        model_->create(classes[below(std::size(classes))](), model_.newUuid());
    held_[below(held_.size())] = made;
    if (made->getMetaClass() == FieldElem::metaClass()) FieldElem(made)->basicSetName(name());
    if (made->getMetaClass() == FieldType::metaClass()) FieldType(made)->setName(name());
  }
  void destroy() {
    const auto standIns = [&] {
      return std::ranges::count_if(standIns_, [](const ModelElement& each) { return bool(each); });
    };
    const auto before = standIns();
    if (const ModelElement element = any<ModelElement>()) element->destroy();
    EXPECT_EQ(standIns(), before) << "who owned them";
  }

  void change() { attempt(changes_[below(std::size(changes_))]); }
  void attempt(void (*action)(Self&)) {
    try {
      action(*this);
    } catch (const orb::zero::Exception&) {
      // A refusal, such as of a key that is taken, has to leave everything as it was.
    }
  }
  /// Has some property of an element name another one as well.
  void refer() {
    const ModelElement owner = any<ModelElement>();
    const auto& properties = owner->getMetaClass().all;
    const Property& property = *properties[below(properties.size())];
    if (!property.type) return;
    const orb::zero::Value target(any(property.type()));
    if (property.services.insert)
      property.services.insert(*owner.get(), target);
    else
      owner->setPropertyValue(property, target);
  }
  void makeStandIn() {
    const ModelElement element = any<ModelElement>();
    if (below(4) == 0) return element->convertReferencesToProxies(below(2), {});
    if (below(4) == 0) return element->disassociateIncoming();
    const ModelElement proxy = model_.createProxy(element->getMetaClass(), element->getUuid());
    standIns_[below(standIns_.size())] = proxy;
    if (below(2)) return element->doDestroy(true, below(4));
    const std::size_t before = model_.size();
    element->doDestroy(false, below(4));
    EXPECT_EQ(model_.size(), before - 1) << "what it owned stays";
  }
  /// Makes what a proxy stands for, puts it in its place, or ends the proxy, which stays one.
  void meetStandIn() {
    const ModelElement proxy = standIns_[below(standIns_.size())];
    if (below(8) == 0) return proxy->destroy();
    if (below(2)) proxy->resolve();
    const ModelElement same = model_.createProxy(proxy->getMetaClass(), proxy->getUuid());
    EXPECT_TRUE(!proxy || same == proxy);
    model_->create(proxy->getMetaClass(), proxy->getUuid());
  }
  /// Goes on with an element in the making, which takes over what others own.
  void build() {
    if (!builder_ || below(8) == 0)
      builder_ = (below(2) ? System::metaClass() : StructType::metaClass()).makeBuilder(model_);
    for (const Property* property : builder_->getMetaClass().all)
      if (property->isOwning) builder_->setOrAdd(*property, any(property->type()));
    if (below(3) == 0) std::exchange(builder_, {})->create();
  }
  /// Writes to the slot itself, which nobody notices, so that it cannot be taken back.
  void writeSlot() {
    if (conditions_.keepsHistory || !open_.empty()) return;
    *any<FieldElem>().ref() = any<LatticeValue>();
    *any<ArrayElem>().ref() = any<LatticeValue>();
  }
  void changeUniverse() {
    auto& universe = any<PowerSetType>()->getUniverse();
    universe.insert(below(universe.size() + 1), name());
    if (below(2)) universe.erase(below(universe.size()));
  }
  CollisionResolution resolution() { return static_cast<CollisionResolution>(below(3)); }

  static constexpr void (*changes_[])(Self&) = {
      [](Self& r) { r.refer(); },
      [](Self& r) { r.refer(); },
      [](Self& r) { r.build(); },
      [](Self& r) { r.build(); },
      [](Self& r) { r.makeStandIn(); },
      [](Self& r) { r.meetStandIn(); },
      [](Self& r) { r.writeSlot(); },
      [](Self& r) { r.changeUniverse(); },
      [](Self& r) { r.any<Variable>()->setName(r.name()); },
      [](Self& r) { r.any<PowerSet>()->setValue(BitSet(r.below(130), r.below(UINT32_MAX))); },
      [](Self& r) { r.any<LatticeType>()->setNumElems(static_cast<std::uint16_t>(r.below(3))); },
      [](Self& r) { r.any<FieldType>()->setName(r.name()); },
      [](Self& r) { r.any<StructType>()->getFields().erase(r.name()); },
      [](Self& r) { r.any<StructType>()->getFields().insert(r.any<FieldType>(), r.resolution()); },
      [](Self& r) { r.any<Struct>()->getValues().insert(r.any<FieldElem>(), r.resolution()); },
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
  std::array<ModelElement, 4> standIns_;
  std::unique_ptr<ModelElement::Builder> builder_;
  std::list<Savepoint> open_;
  std::vector<OldValue> old_;
  std::vector<std::optional<std::string>> states_;  // by the number of steps that led there
  std::size_t at_ = 0;
};

void expectEverythingRestored(const Conditions& conditions, unsigned seeds = 200) {
  for (unsigned seed = 0; seed < seeds && !testing::Test::HasFailure(); ++seed) {
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
TEST(RandomTransactionTest, AmongManyReferences) {
  expectEverythingRestored({.elements = 150, .references = 1500}, 40);
}
TEST(RandomTransactionTest, ByHistory) {
  expectEverythingRestored({.reclaims = true, .keepsHistory = true});
}
TEST(RandomTransactionTest, ByHistoryWithListeners) {
  expectEverythingRestored({.keepsHistory = true, .listens = true});
}

}  // namespace
}  // namespace torvan::datamodel
