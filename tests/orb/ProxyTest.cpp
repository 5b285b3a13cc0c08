#include <orb/zero/query/Query.h>

#include <optional>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using orb::zero::ProxyTag, orb::zero::uuid;
using Elements = std::vector<ModelElement>;

class ProxyTest : public SessionTest {
 protected:
  Elements read(const ModelElement& element, const Property& property, ProxyTag tag) {
    return element->getPropertyValue(property, tag).getValue<Elements>();
  }

  const uuid id = model.newUuid();
};

TEST_F(ProxyTest, IsOnePerUuidAndNoElementOfTheModel) {
  const Variable proxy = Variable::createProxy(model, id);
  EXPECT_TRUE(Variable::createProxy(model, id) == proxy);
  EXPECT_TRUE(proxy && proxy->isProxy());
  EXPECT_EQ(proxy->getProxyId().id, id);
  EXPECT_EQ(*proxy->getProxyId().type, Variable::metaClass());
  EXPECT_FALSE(model.find(id));
  EXPECT_EQ(model.size(), 0U);
  EXPECT_TRUE(query::Query<Variable>(model).execute().empty());
  const Equation equation = make<Equation>();
  equation->setLhs(proxy);
  EXPECT_TRUE(equation->hasLhs() && equation->getLhs() == proxy);
  EXPECT_TRUE(proxy->convertToProxy() == proxy);
  proxy->destroy();
  EXPECT_FALSE(equation->hasLhs());
}

TEST_F(ProxyTest, IsStillOneAfterRollbackAndDestruction) {
  const Variable proxy = Variable::createProxy(model, id);
  Struct second;
  const auto replace = [&](Transaction transaction, bool isKept) {
    proxy->destroy();
    second = Struct::createProxy(model, id);
    EXPECT_TRUE(Struct::createProxy(model, id) == second);
    if (isKept) transaction.commit();
  };
  replace(Transaction(model), false);
  EXPECT_TRUE(!second && Variable::createProxy(model, id) == proxy);
  replace(Transaction(model), true);
  EXPECT_TRUE(!proxy && Struct::createProxy(model, id) == second);
  model.setHistoryLimit(9);
  second->destroy();
  Variable::createProxy(model, id);
  EXPECT_FALSE(model.redo());
  EXPECT_TRUE(model.undo() && model.undo() && Struct::createProxy(model, id) == second);
  second->destroy();
  {
    const Transaction undone(model);
    Variable::createProxy(model, id);
  }
  EXPECT_FALSE(Struct::createProxy(model, id) == second);
}

TEST_F(ProxyTest, ReferencesResolveInTheirPlaces) {
  const Variable proxy = Variable::createProxy(model, id), x = variable("x");
  const Equation equation = make<Equation>();
  equation->setLhs(proxy);
  const Join join = expressions.createJoin({proxy, x, proxy});
  const auto state = snapshot(model);
  EXPECT_FALSE(proxy->resolve());
  const uuid none = Equation::createProxy(model, model.newUuid())->getUuid();
  Struct::create(model, none);  // no Equation
  EXPECT_FALSE(Equation::createProxy(model, none)->resolve());
  model.find(none)->destroy();
  EXPECT_FALSE(x->resolve());
  EXPECT_EQ(snapshot(model), state);

  const Variable original = Variable::create(model, id);
  EXPECT_TRUE(read(join, Join::operands(), ProxyTag::Keep) == (Elements{proxy, x, proxy}));
  const Elements resolved{original, x, original};
  EXPECT_TRUE(read(join, Join::operands(), ProxyTag::Resolve) == resolved);
  EXPECT_TRUE(proxy->resolved() == original && equation->getLhs() == proxy);
  {
    const Transaction transaction(model);
    EXPECT_TRUE(proxy->resolve());
    EXPECT_FALSE(proxy);
    EXPECT_TRUE(read(join, Join::operands(), ProxyTag::Keep) == resolved);
  }
  EXPECT_TRUE(proxy && equation->getLhs() == proxy);
  EXPECT_TRUE(proxy->resolve());
  EXPECT_TRUE(read(join, Join::operands(), ProxyTag::Keep) == resolved);
  EXPECT_TRUE(equation->getLhs() == original);
  original->destroy();
  EXPECT_FALSE(equation->hasLhs());
  EXPECT_EQ(join->getOperands().size(), 1U);
}

TEST_F(ProxyTest, OwnedElementsKeepKeyAndPlaceBothWays) {
  const StructType record = types.createStructType("S", {"a", "b", "c"}, {sets(1), {}, {}});
  const FieldType b = record->getFields()["b"];
  const Equation first = make<Equation>(), second = make<Equation>();
  const System system = systemOf({first, second, make<Equation>()});
  const auto state = snapshot(model);
  for (const bool isKept : {false, true}) {
    Transaction transaction(model);
    const ModelElement fieldProxy = b->convertToProxy(), proxy = second->convertToProxy();
    EXPECT_FALSE(b || second);
    EXPECT_TRUE(fieldProxy->isProxy() && record->getFields()["b"] == fieldProxy);
    EXPECT_TRUE(fieldProxy->getContainer() == record && proxy->getContainer() == system);
    EXPECT_TRUE(system->getEquations()[1] == proxy && system->getEquations().size() == 3);
    EXPECT_TRUE(system->inverseContainsProxyTo(second, System::equations()));
    EXPECT_FALSE(system->inverseContainsProxyTo(first, System::equations()));

    FieldType::Builder builder(model);
    builder->setName("b");
    const FieldType field = builder.create(fieldProxy->getUuid());
    const Equation equation = Equation::create(model, proxy->getUuid());
    EXPECT_TRUE(fieldProxy->resolve() && proxy->resolve());
    EXPECT_TRUE(record->getFields()["b"] == field && record->getFields().size() == 3);
    EXPECT_TRUE(system->getEquations()[1] == equation && system->getEquations().size() == 3);
    EXPECT_FALSE(system->inverseContainsProxyTo(second, System::equations()));
    expectConsistent(model);
    if (isKept) transaction.commit();
    transaction.rollback();
    EXPECT_EQ(snapshot(model) == state, !isKept);
    EXPECT_EQ(b && second, !isKept);
  }
  EXPECT_EQ(model.size(), std::count(state.begin(), state.end(), '\n'));
}

TEST_F(ProxyTest, IsChangedByNoReference) {
  const LatticeValue top = sets(1)->getTop();
  const std::string refused = "CannotModifyProxy";
  EXPECT_EQ(failureOf([&] { *FieldElem::createProxy(model, id).ref() = top; }), refused);
  EXPECT_EQ(failureOf([&] { *ArrayElem::createProxy(model, model.newUuid()).ref() = top; }),
            refused);
}

TEST_F(ProxyTest, DisassociationMeansReferencesToItselfAsWell) {
  const Join join = make<Join>();
  join->getOperands().add(join);
  const Equation equation = make<Equation>();
  equation->setRhs(join);
  join->disassociateIncoming();
  EXPECT_TRUE(join && join->getOperands().empty() && !equation->hasRhs());
}

TEST_F(ProxyTest, TakesThePlaceOfTheElementWhateverItsKey) {
  const StructType record = types.createStructType("R", {"a", "b"}, {sets(1), sets(1)});
  const FieldType a = record->getFields()["a"], b = record->getFields()["b"];
  a->basicSetName("b");
  EXPECT_RAISES(a->convertToProxy(), "UniquenessConstraint");
  EXPECT_TRUE(a && record->getFields()["b"] == b);
  expectConsistent(model);
}

TEST_F(ProxyTest, WhatARollbackHasEndedStandsForNothing) {
  const auto real = make<PowerSet>();
  const FieldElem owner = field("a");
  for (const bool isProxy : {true, false}) {
    {
      const Transaction undone(model);
      *owner.ref() = isProxy ? PowerSet::createProxy(model, real->getUuid()) : make<PowerSet>();
    }
    EXPECT_FALSE(owner->getPropertyValue(FieldElem::value()).getValue<ModelElement>());
    owner->convertReferencesToProxies(false, {});
    EXPECT_FALSE(owner->hasValue());
  }
}

TEST_F(ProxyTest, ReferencesBecomeProxies) {
  const LatticeType type = make<PowerSetType>();
  const Variable x = variable("x", type), y = variable("y", type);
  const Equation equation = make<Equation>();
  equation->setLhs(x);
  equation->setRhs(y);
  const System system = systemOf({equation});
  const auto state = snapshot(model);
  const auto kept = [&](bool owned, const std::optional<orb::zero::ProxyId>& only) {
    const Transaction transaction(model);
    system->convertReferencesToProxies(owned, only);
    EXPECT_TRUE(equation->getContainer() == system && x && y);
    EXPECT_EQ(equation->getLhs() == x, !equation->getLhs()->isProxy());
    return std::string(equation->getLhs() == x ? "x" : "") + (equation->getRhs() == y ? "y" : "");
  };
  EXPECT_EQ(kept(false, {}), "xy");
  EXPECT_EQ(kept(true, {}), "");
  EXPECT_EQ(kept(true, y->getProxyId()), "x");
  EXPECT_EQ(snapshot(model), state);
  x->convertReferencesToProxies(false, {});
  EXPECT_TRUE(x->getType()->isProxy() && y->getType() == type);
  EXPECT_TRUE(x->inverseContainsProxyTo(type, Term::type()));
  EXPECT_TRUE(x->getPropertyValue(Term::type()).getValue<ModelElement>() == type);
  x->setPropertyValue(Term::type(), type);
  EXPECT_TRUE(x->getType() == type);
}

}  // namespace
}  // namespace torvan::datamodel
