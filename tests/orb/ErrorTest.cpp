#include <orb/zero/MessageCatalog.h>
#include <orb/zero/ModelChanges.h>
#include <orb/zero/meta/MetaRegistry.h>

#include <functional>
#include <optional>
#include <utility>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using orb::zero::Exception;
using orb::zero::Value;
using ErrorTest = SessionTest;

TEST_F(ErrorTest, NamesWhatIsWrongAndChangesNothing) {
  const Session foreign;
  const Variable x = variable("x"), gone = variable("y");
  const Struct record = make<Struct>();
  record->getValues().insert(field("a"));
  const FieldElem second = field("a");
  const Equation equation = make<Equation>(), next = make<Equation>();
  const System system = systemOf({equation, next});
  const Join join = expressions.createJoin({x});
  const Variable proxy = Variable::createProxy(model, model.newUuid());
  const Value sequence(std::vector<ModelElement>{x, gone});
  const auto& registry = meta::MetaRegistry::getInstance();
  Variable::Builder blank(model), taken(model), spent(model);
  FieldElem::Builder part(model), alien(foreign.model()), alienA(foreign.model());
  alienA->basicSetName("a");
  const FieldElem alienField = alienA.create();
  const auto alienJoin = Join::create(foreign.model(), model.newUuid());
  spent.create();
  gone->destroy();
  const auto state = snapshot(model);
  const std::string crossModel = "CannotCreateCrossModelAssociation";

  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { ModelElement()->getUuid(); }, castFailure<ModelElement>()},
      {[&] { gone->setName("z"); }, castFailure<Variable>()},
      {[&] { system->getEquations().add(x); },
       "CannotAddIncompatibleTypes(torvan.datamodel.Variable,torvan.datamodel.Equation)"},
      {[&] { record->getValues().insert(alienJoin); },  // the type is asked first
       "CannotAddIncompatibleTypes(torvan.datamodel.Join,torvan.datamodel.FieldElem)"},
      {[&] { record->inverseAdd(x, Struct::values()); },
       "CannotAddIncompatibleTypes(torvan.datamodel.Variable,torvan.datamodel.FieldElem)"},
      {[&] { join->inverseAdd(equation, Join::operands()); },
       "CannotAddIncompatibleTypes(torvan.datamodel.Equation,torvan.datamodel.Term)"},
      {[&] { record->getValues().insert(alienField); }, crossModel},
      {[&] { record->getValues().insert(second); }, "UniquenessConstraint"},
      {[&] { ModelElement::Builder::Orchestrator(model).create(taken, x->getUuid()); },
       "UniquenessConstraint"},
      {[&] { join->getOperands().set(0, alienJoin); }, crossModel},
      {[&] { equation->setRhs(foreign.expressionFactory()->createVariable({}, "x")); }, crossModel},
      {[&] { ModelElement::Builder::Orchestrator(model).create(alien, model.newUuid()); },
       crossModel},
      {[&] { proxy->setName("z"); }, "CannotModifyProxy"},
      {[&] { proxy->inverseAdd(x, Join::operands()); }, "CannotModifyProxy"},
      {[&] { proxy->inverseRemove(x, Join::operands()); }, "CannotModifyProxy"},
      {[&] { proxy->createInto(Struct::values(), part, x->getUuid()); }, "CannotModifyProxy"},
      {[&] { proxy->basicDisassociateAll(); }, "CannotModifyProxy"},
      {[&] { proxy->convertReferencesToProxies(true, {}); }, "CannotModifyProxy"},
      {[&] { system->getEquations().set(0, next); }, "CannotAddSecondObject"},
      {[&] { system->getEquations().add(Equation()); }, "CannotAddNonExistentObject"},
      {[&] { system->getEquations().set(0, gone); }, "CannotAddNonExistentObject"},
      {[&] { join->getOperands().insert(0, gone); }, "CannotAddNonExistentObject"},
      {[&] { record->getValues().insert(gone); }, "CannotAddNonExistentObject"},
      {[&] { join->setPropertyValue(Join::operands(), sequence); }, "CannotAddNonExistentObject"},
      {[&] { x->getPropertyValue(Join::operands()); },
       "NoSuchProperty(torvan.datamodel.Variable,torvan.datamodel.Join.operands)"},
      {[&] { x->getPropertyValue("size"); }, "NoSuchProperty(torvan.datamodel.Variable,size)"},
      {[&] { x->createInto(Struct::values(), part, model.newUuid()); },
       "NoSuchProperty(torvan.datamodel.Variable,torvan.datamodel.Struct.values)"},
      {[&] { registry.createElement(model, "torvan.datamodel.Widen"); },
       "NoSuchType(torvan.datamodel.Widen)"},
      {[&] { registry.createElement(model, u"torvan::datamodel::Term"); }, "InvalidValue"},
      {[&] { record->createInto(Term::type(), part, model.newUuid()); }, "InvalidValue"},
      {[&] { x->inverseAdd(join, Term::type()); }, "InvalidValue"},
      {[&] { join->getOperands().set(1, x); }, "InvalidValue"},
      {[&] { join->getOperands().insert(2, x); }, "InvalidValue"},
      {[&] { join->getOperands().erase(1); }, "InvalidValue"},
      {[&] { system->getEquations()[2]; }, "InvalidValue"},
      {[&] { system->getEquations().set(2, equation); }, "InvalidValue"},
      {[&] { spent.setOrAdd(Variable::name(), Value()); }, "InvalidValue"},
      {[&] { Struct::createProxy(model, proxy->getUuid()); }, "InvalidValue"},
      {[&] { model.addListener(nullptr); }, "InvalidValue"},
  };
  for (const auto& [call, failure] : cases) {
    EXPECT_EQ(failureOf(call), failure);
    EXPECT_EQ(snapshot(model), state) << failure;
  }
  EXPECT_TRUE(taken.create());
}

TEST_F(ErrorTest, ModelWideSwitchesWaitForTransactions) {
  const auto none = std::shared_ptr<orb::zero::ModelListener>();
  Transaction transaction(model);
  const std::function<void()> switches[] = {[&] { Model::Freezer::freeze(model); },
                                            [&] { model.addListener(none); },
                                            [&] { model.removeListener(none); },
                                            [&] { model.setHistoryLimit(1); },
                                            [&] { model.undo(); },
                                            [&] { model.redo(); }};
  for (const auto& call : switches) EXPECT_EQ(failureOf(call), "TransactionInProgress");
  transaction.commit();
  model.setHistoryLimit(1);
  const Variable x = variable("x");
  const Equation equation = make<Equation>();
  equation->setRhs(x);
  Model::Freezer::freeze(model);
  const Variable::Builder builder(model);
  const std::function<void()> changes[] = {[&] { const Transaction refused(model); },
                                           [&] { model.undo(); },
                                           [&] { model.reclaim(); },
                                           [&] { Variable::createProxy(model, model.newUuid()); },
                                           [&] { x->destroy(); },
                                           [&] { x->convertToProxy(); },
                                           [&] { x->convertReferencesToProxies(true, {}); },
                                           [&] { builder->setName("y"); },
                                           [&] { x->disassociateIncoming(); },
                                           [&] { equation->inverseRemove(x, Equation::rhs()); }};
  for (const auto& call : changes) EXPECT_EQ(failureOf(call), "CannotModifyFrozenModel");
  EXPECT_TRUE(model.size() == 2 && equation->getRhs() == x);

  auto thaw = std::make_optional<Model::Freezer::Thaw>(model);
  {
    const auto longer = Model::Freezer::thaw(model);
    thaw.reset();
    x->setName("y");
    thaw.emplace(model);
  }
  Transaction last(model);
  thaw.reset();
  x->destroy();
  last.commit();
  EXPECT_EQ(failureOf(changes[0]), "CannotModifyFrozenModel");
}

TEST_F(ErrorTest, TextHoldsTheArguments) {
  const auto text = [](const std::string& catalog, const std::string& identifier) {
    return std::string(Exception(catalog, identifier, {"P.Q", "R"}).what());
  };
  EXPECT_EQ(text("orb0:messages", "NoSuchProperty"), "The class 'P.Q' has no property 'R'.");
  EXPECT_EQ(text("orb0:messages", "CannotModifyProxy"), "Cannot modify a proxy.");
  EXPECT_STREQ(Exception("orb0:messages", "CannotLoad", {"", "7", "id", "", "why"}).what(),
               "Cannot load, line 7, element 'id': why");
  EXPECT_EQ(text("orb0:messages", "InvalidHandle"), "Message text unavailable");
}

}  // namespace
}  // namespace torvan::datamodel
