#include <orb/zero/Transaction.h>
#include <orb/zero/hb/MetaMarshalerRegistry.h>
#include <orb/zero/hb/WrapperInfo.h>
#include <torvan/datamodel/ValueTypes.h>

#include <orb/zero/meta/Emit.h>  // after the types

#include <set>
#include <thread>

#include "tests/bindings/HostTest.h"
#include "tests/orb/Failure.h"

namespace torvan::datamodel {

/// Its name is a number; its parts have keys that hosts have no form for.
class Pipe : public orb::zero::Handle<Pipe, ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& parts() { return property(3); }
};

class Pipe::Impl : public orb::zero::ImplOf<Pipe> {
  std::uint16_t name_ = 0;
  BitSet bits_;
  orb::zero::ElementMap<BitSet, Pipe> parts_{*this, &Impl::keyOf, &Pipe::parts};

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.Pipe",
      "2d6a1f0c-7b58-4b0e-9c35-6f1d0e8a4b11",
      Row{&Impl::name_, "name", 1, "95c3e7d4-1a2f-4f86-8d70-b3e94c5a6d12", Unique},
      Row{&Impl::bits_, "bits", 2, "0c8f5b2e-64d7-4a19-b3e0-7d915a2c6f84", Unique},
      Row{&Impl::parts_, "parts", 3, "e17a94d3-2b5c-4d08-9f6e-3a0c8b7d5142", 0, "bits"}};

  static const BitSet& keyOf(const ModelElement::Impl& element) {
    return static_cast<const Impl&>(element).bits_;
  }
  void setName(std::uint16_t value) { set<&Impl::name_>(value); }
};

namespace {

using CallTest = HostTest;

constexpr const char* id = "12345678-1234-4234-8234-123456789abc";

TEST_F(CallTest, PackagesAndClassesAreThereOnceHoweverOftenTheyAreRegistered) {
  for (const bool isPerCall : {true, false}) {
    tyve::omSetTyveUsingUSM(isPerCall);
    std::vector<std::jthread> callers;
    for (int i = 0; i < 4; ++i) callers.emplace_back(HBInitialize_torvan_datamodel);
  }
  HBTerminate_torvan_datamodel();

  auto& classSystem = tyve::ClassSystem::getInstance();
  EXPECT_EQ(classSystem.getPackages().size(), 2U);
  const auto& classes = classSystem.findPackage(intern("torvan.datamodel"))->getClasses();
  EXPECT_EQ(classes.size(), modelClasses().size() + 1);  // and the enumeration
}

TEST_F(CallTest, ElementsAreMadeFromAStructAndAUuidInEitherOrder) {
  const Host init = Host::structure({"name", "type"}, {text("x"), host(sets)});
  const Host x = construct("Variable", {model, init, text(id)});
  EXPECT_EQ(x.className(), modelName("Variable"));
  EXPECT_EQ(get(x, "name").text(), "x");
  EXPECT_EQ(get(x, "type"), host(sets));
  EXPECT_EQ(get(x, "uuid").text(), id);
  const Host operands = Host::structure({"operands"}, {Host::cell({host(sets->getTop()), x})});
  EXPECT_EQ(get(get(construct("Join", {model, operands}), "operands"), "size"), number(2));

  EXPECT_EQ(failure("Variable", {model, text(id), init}), "UniquenessConstraint");
  call(x, "delete");
  EXPECT_EQ(get(construct("Variable", {model, text(id), init}), "uuid").text(), id);
}

TEST_F(CallTest, ConstructorsRefuseWhatTheyCannotUse) {
  for (const Host& noModel :
       {Host(), Host::empty(intern("orb.zero.Model")), text("model"), host(sets)})
    EXPECT_EQ(failure("Variable", {noModel}), "CannotCreateWithoutModel");
  for (const Host& noUuid : {text("12345678-1234"), Host::scalar(1.0), Host(),
                             Host::structure({"name"}, {text("x"), text("y")}, {1, 2})})
    EXPECT_EQ(failure("Variable", {model, noUuid}), "InvalidValue");
  EXPECT_EQ(failure("Variable", {model, Host::structure({"type"}, {host(sets->getTop())})}),
            "CannotCastIncompatibleTypes(torvan.datamodel.LatticeType)");
}

TEST_F(CallTest, WhatIsGoneIsNoReceiver) {
  const Host object = host(sets->getTop().clone()), values = get(host(arrays->getTop()), "values");
  {
    const auto transaction = session.model().beginTransaction();
    call(object, "delete");
    arrays->getTop()->destroy();
    EXPECT_RAISES(call(object, "join", {text("no value")}), "other InvalidHandle");
    EXPECT_RAISES(get(values, "size"), "other InvalidHandle");
  }
  EXPECT_EQ(get(values, "size"), number(2));  // the transaction was rolled back
  EXPECT_EQ(call(object, "eq", {object}), Host::scalar(true));
  EXPECT_RAISES(call(empty("PowerSet"), "join", {object}), "other InvalidHandle");
}

TEST_F(CallTest, AnEmptyHandleIsAnObjectOfItsDeclaredClass) {
  const Host variable = construct("Variable", {model});
  const Host type = get(variable, "type");
  EXPECT_EQ(type.className(), modelName("LatticeType"));
  EXPECT_RAISES(get(type, "name"), "other InvalidHandle");
  EXPECT_NE(type, empty("LatticeType"));
  // As an argument it goes to the operation, as does an empty object.
  EXPECT_EQ(call(host(sets), "isCompatible", {type}), Host::scalar(false));
  EXPECT_EQ(call(host(sets), "isCompatible", {empty("LatticeType")}), Host::scalar(false));

  const Host equation = construct("Equation", {model});
  set(equation, "lhs", variable);
  EXPECT_EQ(call(equation, "getLhsVariable"), variable);
  EXPECT_RAISES(set(equation, "lhs", host(sets)),
                "CannotCastIncompatibleTypes(torvan.datamodel.LExpression)");
  set(equation, "lhs", Host());
  EXPECT_EQ(get(equation, "lhs").className(), modelName("LExpression"));
}

TEST_F(CallTest, CreateIntoAddsOneElementOrNone) {
  const Host array = construct("Array", {model}), values = get(array, "values");
  const Host init = Host::structure({"index", "value"}, {number(7), host(sets->getTop())});
  const Host element = call(array, "createIntoValues", {init, text(id)});
  EXPECT_EQ(get(element, "uuid").text(), id);
  EXPECT_EQ(call(values, "at", {number(7)}), element);

  const std::size_t size = session.model().size();
  EXPECT_RAISES(call(array, "createIntoValues", {init}), "UniquenessConstraint");
  EXPECT_RAISES(call(array, "createIntoValues", {init, text("no UUID")}), "InvalidValue");
  EXPECT_EQ(session.model().size(), size);

  call(array, "createIntoValues");
  EXPECT_EQ(call(values, "keys"), Host::row<std::uint16_t>(std::vector<std::uint16_t>{0, 7}));
  const Host system = construct("System", {model});
  const Host equation = call(system, "createIntoEquations");
  EXPECT_EQ(call(get(system, "equations"), "at", {number(0)}), equation);

  // What a refused struct has named already stays where it was.
  const Host thief = Host::structure({"equations", "equation"}, {equation, equation});
  EXPECT_EQ(failure("System", {model, thief}), "NoSuchProperty(torvan.datamodel.System,equation)");
  EXPECT_EQ(get(equation, "container"), system);
}

TEST_F(CallTest, OperationsTakeAndGiveWhatTheirSignaturesSay) {
  const Host top = host(sets->getTop()), bottom = host(sets->getBottom());
  EXPECT_EQ(call(top, "le", {bottom}), number(2).withClass(modelName("boolean3")));
  EXPECT_EQ(call(top, "eq", {bottom}), Host::scalar(false));
  EXPECT_EQ(call(call(top, "at", {number(1)}), "clone").className(), modelName("PowerSet"));
  EXPECT_RAISES(call(top, "at", {Host::scalar(65536.0)}),
                "other WrongArgument(torvan.datamodel.PowerSet,at,2,uint16 scalar,65536)");

  const Host equation = construct("Equation", {model});
  EXPECT_EQ(call(equation, "getRhsVariables"), Host());
  ExpressionFactory& expressions = *session.expressionFactory();
  const Variable x = expressions.createVariable(sets, "x"),
                 y = expressions.createVariable(sets, "y");
  set(equation, "rhs", host(expressions.createJoin({x, y, x})));
  const Host read = call(equation, "getRhsVariables");
  EXPECT_EQ(read.className(), modelName("Variable"));
  ASSERT_EQ(read.count(), 3u);
  EXPECT_EQ(read.at(1), host(y));
}

TEST_F(CallTest, TheEnumerationConvertsFromAndToTheHost) {
  using orb::zero::Value;
  using enum boolean3;
  const auto& marshaler = orb::zero::hb::MetaMarshalerRegistry::getInstance().getPropertyMarshaler(
      "torvan.datamodel.boolean3");
  const auto members = [&](std::vector<std::int32_t> numbers) {
    return Host::row<std::int32_t>(numbers).withClass(modelName("boolean3"));
  };
  const std::pair<Value, Host> pairs[] = {{NA, members({3})},
                                          {boost::optional<boolean3>(F), members({2})},
                                          {boost::optional<boolean3>(), Host()},
                                          {std::vector{NA, T, NA}, members({3, 1, 3})},
                                          {std::set{NA, T}, members({1, 3})},
                                          {std::set<boolean3>(), empty("boolean3")}};
  for (const auto& [value, host] : pairs) EXPECT_EQ(marshaler.toHost(value), host);

  for (const Host& na : {members({3}), text("NA"), Host::strings({"NA"}), Host::cell({text("NA")})})
    EXPECT_EQ(marshaler.fromHost(na), Value(NA));
  EXPECT_TRUE(marshaler.fromHost(empty("boolean3")).isEmpty());
  for (const Host& none :
       {members({1, 2}), text("na"), Host::strings({"T", "F"}), number(1), host(sets)})
    EXPECT_EQ(orb::zero::failureOf([&] { marshaler.fromHost(none); }),
              "CannotCastIncompatibleTypes(torvan.datamodel.boolean3)");

  EXPECT_EQ(call(members({3}), "getLiteral").text(), "NA");
  EXPECT_EQ(call(members({3}), "getPublicIdentifier").text(), "torvan.datamodel.boolean3.NA");
  EXPECT_RAISES(call(members({4}), "getLiteral"),
                "other UnknownMember(torvan.datamodel.boolean3,4)");
}

TEST_F(CallTest, AnObjectKeepsItsModel) {
  Host variable;
  {
    const Host other = classNamed(intern("orb.zero.Model")).construct({});
    variable = construct("Variable", {other, Host::structure({"name"}, {text("x")})});
    EXPECT_EQ(get(variable, "model"), other);
    EXPECT_NE(other, model);
  }
  EXPECT_EQ(get(variable, "name").text(), "x");
  EXPECT_RAISES(set(construct("Equation", {model}), "lhs", variable),
                "CannotCreateCrossModelAssociation");
}

TEST_F(CallTest, ObjectsTellWhatTheyArePartOfAndHowTheyAreShown) {
  const Variable x = session.expressionFactory()->createVariable(sets, "x");
  const Host object = host(x), type = host(sets),
             none = get(construct("Variable", {model}), "type");
  for (const Host& part : {object, type, get(type, "universe")})
    EXPECT_EQ(part.native()->domain(), model.native()->domain());
  EXPECT_EQ(none.native()->domain(), nullptr);

  const auto printed = [](const Host& each) { return classNamed(each.className()).print(each); };
  EXPECT_EQ(printed(object), "x");
  EXPECT_EQ(printed(construct("IndexRef", {model})), "IndexRef(,0 : 0)");
  EXPECT_EQ(printed(type), "<torvan.datamodel.PowerSetType 'P' " + get(type, "uuid").text() + ">");
  EXPECT_EQ(printed(none), "an empty torvan.datamodel.LatticeType");
  EXPECT_EQ(printed(get(type, "universe")), "<orb.zero.PrimitiveSet of 3>");
  EXPECT_EQ(printed(empty("Term")), "an empty torvan.datamodel.Term");
  x->destroy();
  EXPECT_EQ(printed(object), "a deleted torvan.datamodel.Variable");
}

TEST_F(CallTest, WhatTheHostHasNoFormForIsNotShown) {
  meta::classesOf(meta::ClassList<Pipe>());
  const Pipe pipe = Pipe::create(session.model(), session.model().newUuid());
  pipe->setName(5);
  const orb::zero::hb::WrapperInfo info(Pipe::metaClass(), {});
  const auto object = std::make_shared<const orb::zero::hb::ElementObject>(pipe);
  EXPECT_EQ(info.print(Host::object(info.getName(), object)),
            "<torvan.datamodel.Pipe " + orb::zero::toString(pipe->getUuid()) + ">");
  EXPECT_EQ(info.getProperties().size(), 1U);
}

}  // namespace
}  // namespace torvan::datamodel
