#include <orb/zero/ModelChanges.h>
#include <orb/zero/query/Query.h>

#include <algorithm>
#include <memory>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"
#include "tests/orb/Subject.h"

namespace torvan::datamodel {
namespace {

using orb::zero::ProxyTag;

std::string castFailure(std::string_view type) {
  return "CannotCastIncompatibleTypes(" + std::string(type) + ')';
}

void expectReadBack(const Subject& s) {
  EXPECT_EQ(s.element->getPropertyByIndex(s.property.position), &s.property);
  EXPECT_FALSE(s.has());
  for (const Value& given : {s.value, s.other}) {
    s.element->setPropertyValue(*s.element->getPropertyByName(s.property.name), given);
    EXPECT_TRUE(s.has() && s.get() == given);
    EXPECT_TRUE(s.element->getPropertyValue(s.property.name) == given);
  }
  s.set(Value());
  EXPECT_TRUE(!s.has() && s.get() == s.unset);
  s.set(fit(s.model, s.property, 0));  // 0 and "" are given like any other value
  EXPECT_EQ(s.has(), s.property.kind == ValueKind::Single);
}

void expectSetOnce(const Subject& s) {
  for (const Value& given : {s.unset, s.value}) {
    s.set(given);
    const Transaction transaction(s.model);
    for (const ProxyTag tag : {ProxyTag::Resolve, ProxyTag::Keep})
      s.element->setPropertyValue(s.property, given, tag);
    EXPECT_FALSE(s.element->storage());
  }
}

void expectQueried(const Subject& s) {
  const auto isFound = [&](const query::Constraint& constraint) {
    query::Query<ModelElement> search(s.model);
    search.narrow(s.element->getMetaClass(), query::SearchClassMatchMode::ThisClassOnly);
    search.where(constraint);
    const Elements found = search.execute();
    return std::find(found.begin(), found.end(), s.element) != found.end();
  };
  const query::Constraint present = query::Constrainable(s.property).isPresent();
  const query::Constraint searched = holding(s.property, s.other);
  EXPECT_FALSE(isFound(present) || isFound(searched));
  s.set(s.value);
  EXPECT_TRUE(isFound(present) && !isFound(searched));
  s.set(s.other);
  EXPECT_TRUE(isFound(present) && isFound(searched));
}

struct Listener final : orb::zero::ModelListener {
  void changed(const orb::zero::ModelChanges& changes) override { told.push_back(changes); }
  std::vector<orb::zero::ModelChanges> told;
};

void expectToldAndRepeated(const Subject& s) {
  const std::vector<Value> states{s.unset, s.value, s.other, s.unset};
  std::vector<std::string> models{snapshot(s.model)};
  const auto listener = std::make_shared<Listener>();
  s.model.addListener(listener);
  s.model.setHistoryLimit(3);
  const auto step = [&](std::size_t from, std::size_t to, auto change) {
    EXPECT_TRUE(change());
    if (models.size() == to) models.push_back(snapshot(s.model));
    EXPECT_EQ(snapshot(s.model), models[to]);
    ASSERT_EQ(listener->told.size(), 1U);
    const auto& [created, destroyed, changed] = listener->told[0];
    EXPECT_TRUE(created.empty() && destroyed.empty());
    ASSERT_EQ(changed.size(), 1U);
    ASSERT_EQ(changed[0].properties.size(), 1U);
    const auto& [property, before, after] = changed[0].properties[0];
    EXPECT_TRUE(changed[0].element == s.element && *property == s.property);
    EXPECT_TRUE(before == states[from] && after == states[to] && s.get() == after);
    listener->told.clear();
  };
  for (std::size_t i = 1; i < 4; ++i) step(i - 1, i, [&] { return s.set(states[i]), true; });
  for (std::size_t i = 3; i-- > 0;) step(i + 1, i, [&] { return s.model.undo(); });
  for (std::size_t i = 1; i < 4; ++i) step(i - 1, i, [&] { return s.model.redo(); });
}

void expectRefused(const Subject& s) {
  const Model foreign = Model::create();
  const Value alien = fit(foreign, s.property, 2);
  const bool isSingle = s.property.kind == ValueKind::Single;
  s.set(s.value);
  const auto state = snapshot(s.model), alienState = snapshot(foreign);
  EXPECT_EQ(s.refusal(true), castFailure(s.property.typeName()));
  if (s.property.type) {
    EXPECT_EQ(s.refusal(alien), "CannotCreateCrossModelAssociation");
    const ModelElement unfit =
        concreteClass(s.property.type(), false).makeBuilder(Model::create())->create();
    EXPECT_EQ(s.refusal(isSingle ? Value(unfit) : Value(Elements{unfit})),
              castFailure(s.property.typeName()));
  }
  const ModelElement proxy = s.model.createProxy(s.element->getMetaClass(), s.model.newUuid());
  for (const Value& given : {s.other, alien, Value(true), Value()})
    EXPECT_RAISES(proxy->setPropertyValue(s.property, given), "CannotModifyProxy");
  EXPECT_TRUE(proxy->getPropertyValue(s.property) == s.unset);

  Model::Freezer::freeze(s.model);
  for (const Value& given : {s.other, Value()})
    EXPECT_EQ(s.refusal(given), "CannotModifyFrozenModel");
  EXPECT_EQ(snapshot(s.model), state);
  EXPECT_EQ(snapshot(foreign), alienState);
  const auto thaw = Model::Freezer::thaw(s.model);
  s.set(s.other);
  EXPECT_TRUE(s.get() == s.other);
}

template <class X>
class ContractTest : public SessionTest {
 protected:
  void forEachProperty(void (*expect)(const Subject&)) {
    if (X::metaClass().isAbstract()) return;
    for (const Property* property : X::metaClass().all) {
      if (property->flags & meta::ReadOnly) continue;
      SCOPED_TRACE(property->getQualifiedName());
      const Subject subject(X::metaClass(), *property);
      expect(subject);
      expectConsistent(subject.model);
    }
  }
};

template <class... X>
testing::Types<X...> testedClasses(ClassList<X...>);
TYPED_TEST_SUITE(ContractTest, decltype(testedClasses(ModelClasses())));

TYPED_TEST(ContractTest, ReadsBack) { this->forEachProperty(&expectReadBack); }
TYPED_TEST(ContractTest, SetsNothingTwice) { this->forEachProperty(&expectSetOnce); }
TYPED_TEST(ContractTest, IsQueried) { this->forEachProperty(&expectQueried); }
TYPED_TEST(ContractTest, IsToldAndRepeated) { this->forEachProperty(&expectToldAndRepeated); }
TYPED_TEST(ContractTest, Refuses) { this->forEachProperty(&expectRefused); }

TYPED_TEST(ContractTest, CreatesUnsetElementOrRefuses) {
  const ClassInfo& type = TypeParam::metaClass();
  const orb::zero::uuid id = this->model.newUuid();
  if (type.isAbstract()) {
    EXPECT_RAISES(TypeParam::create(this->model, id), "InvalidValue");
    EXPECT_RAISES(typename TypeParam::Builder builder(this->model), "InvalidValue");
    EXPECT_RAISES(TypeParam::createProxy(this->model, id), "InvalidValue");
    EXPECT_EQ(this->model.size(), 0U);
    return;
  }
  const TypeParam element = TypeParam::create(this->model, id);
  EXPECT_EQ(element->getUuid(), id);
  EXPECT_EQ(element->getMetaClass(), type);
  EXPECT_TRUE(element->getModel() == this->model);
  EXPECT_TRUE(element->This() == element);
  EXPECT_FALSE(element->getContainer());
}

TYPED_TEST(ContractTest, BuilderTakesAllValues) {
  const ClassInfo& type = TypeParam::metaClass();
  if (type.isAbstract()) return;
  const auto builder = type.makeBuilder(this->model);
  std::vector<Value> given;
  for (const Property* property : type.all) {
    const Value value = given.emplace_back(fit(this->model, *property, 2));
    EXPECT_RAISES(builder->setOrAdd(*property, Value(true)), castFailure(property->typeName()));
    EXPECT_EQ(builder->setOrAdd(*property, value), property->position);
    EXPECT_EQ(builder->given().count(), given.size());
    EXPECT_EQ(builder->doClear(*property), property->position);
    EXPECT_EQ(builder->given().count(), given.size() - 1);
    if (property->kind != ValueKind::Single && property->type)
      for (const ModelElement& each : value.getValue<Elements>())
        builder->setOrAdd(*property, Value(each));
    else
      builder->setOrAdd(*property, value);
    EXPECT_TRUE(builder->given().test(given.size()));
  }
  const Property& alien = type == System::metaClass() ? Join::operands() : System::equations();
  std::unique_ptr<ModelElement::Builder> none;
  EXPECT_EQ(builder->setOrAdd(alien, Value()), -1);
  EXPECT_EQ(builder->setOrAdd(alien, none), -1);
  EXPECT_EQ(builder->doClear(alien), -1);

  const ModelElement element = builder->create();
  for (const Property* property : type.all) {
    const Value& value = given[static_cast<std::size_t>(property->position) - 1];
    EXPECT_TRUE(element->getPropertyValue(*property) == value) << property->name;
    if (!(property->flags & meta::ReadOnly)) continue;
    for (const Value& key : {value, Value(true), Value()})
      EXPECT_RAISES(element->setPropertyValue(*property, key),
                    "CannotSetReadOnlyProperty(" + property->getQualifiedName() + ')');
  }
  expectConsistent(this->model);
}

}  // namespace
}  // namespace torvan::datamodel
