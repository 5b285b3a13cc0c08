#include <thread>

#include "tests/bindings/HostTest.h"

namespace torvan::datamodel {
namespace {

// What scripts rely on:
//   new class < superclass {properties, = for a writable one} method(arguments)optional:result …
// Abstract classes go without "new"; a point stands for the static StaticMetaClass.
std::vector<std::string> expectedClasses() {
  const auto lattice = [](const std::string& name) {
    return " join(LatticeValue)0:LatticeValue meet(LatticeValue)0:LatticeValue"
           " le(LatticeValue)0:boolean3 scalar eq(LatticeValue)0:logical scalar clone()0:" +
           name;
  };
  const std::string at = " at(uint16 scalar,uint16 scalar)1:LatticeValue";
  const auto indexable = [&](const std::string& name) { return at + lattice(name); };
  const std::string type = " isCompatible(LatticeType)0:logical scalar";
  return {"new Array < IndexableValue {values} createIntoValues(any,char)2:ArrayElem ." +
              indexable("Array"),
          "new ArrayElem < ModelElement {index value=} .",
          "new ArrayType < LatticeType {elemType} ." + type,
          "new Conditional < Expression {ctrlExpr operandTrue operandFalse} .",
          "new Equation < ModelElement {lhs= rhs=} . print()0:char getLhsVariable()0:Variable "
          "getRhsVariables()0:Variable",
          "Expression < Term {} .",
          "new FieldElem < ModelElement {name value=} .",
          "new FieldType < ModelElement {name elemType} .",
          "new IndexRef < LExpression {expr startIndex endIndex} .",
          "IndexableValue < LatticeValue {} ." + at,
          "new Join < Expression {operands} .",
          "LExpression < Expression {} .",
          "LatticeType < ModelElement {name numElems top bottom} ." + type,
          "LatticeValue < Term {} ." + lattice("LatticeValue"),
          "new Meet < Expression {operands} .",
          "new PowerSet < IndexableValue {} ." + indexable("PowerSet"),
          "new PowerSetType < LatticeType {universe} ." + type,
          "new Prune < Expression {expr field} .",
          "new Struct < LatticeValue {values} createIntoValues(any,char)2:FieldElem ."
          " at(char)0:LatticeValue" +
              lattice("Struct") + " prune(TyveFactoryString vector)0:Struct",
          "new StructRef < LExpression {expr field} .",
          "new StructType < LatticeType {fields} . at(char)0:LatticeType" + type,
          "new System < ModelElement {equations} createIntoEquations(any,char)2:Equation .",
          "Term < ModelElement {type} .",
          "new Variable < LExpression {name} .",
          "boolean3 < int32 {} getValue()0:int32 scalar getLiteral()0:TyveFactoryString scalar "
          "getPublicIdentifier()0:TyveFactoryString scalar"};
}

std::string shortName(tyve::Name name) {
  for (const std::string_view prefix : {"torvan.datamodel.", "orb.zero."})
    if (name.text().starts_with(prefix)) return name.text().substr(prefix.size());
  return name.text();
}

std::string described(const tyve::Method& method) {
  const tyve::Signature& signature = method.getSignature();
  std::string arguments;
  for (std::size_t i = method.isStatic() ? 0 : 1; i < signature.arguments.size(); ++i)
    arguments += (arguments.empty() ? "" : ",") + shortName(signature.arguments[i]);
  const std::string text = " " + method.getName().text() + "(" + arguments + ")" +
                           std::to_string(signature.optional) + ":" + shortName(signature.result);
  return text == " StaticMetaClass()0:meta.Class" ? " ." : text;
}

std::string described(const tyve::COSClassInfo& info) {
  const std::string name = shortName(info.getName());
  if (!info.isAbstract()) {
    EXPECT_EQ(described(*info.getConstructor()), " " + name + "(Model,any,any)2:" + name);
    EXPECT_EQ(info.getConstructor()->getSignature().argumentNames, "model opt_init opt_uuid");
  }
  std::string text =
      (info.isAbstract() ? "" : "new ") + name + " < " + shortName(info.getSuperclassName()) + " {";
  for (const auto& property : info.getProperties())
    text += (text.back() == '{' ? "" : " ") + property->getName().text() +
            (property->isReadOnly() ? "" : "=");
  text += "}";
  for (const auto& method : info.getMethods()) text += described(*method);
  return text;
}

using DescriptionTest = HostTest;

TEST_F(DescriptionTest, ClassesAreThoseOfThePackageInTheOrderOfTheirNames) {
  std::vector<std::string> given;
  for (const tyve::COSClassInfo* info :
       tyve::ClassSystem::getInstance().findPackage(intern("torvan.datamodel"))->getClasses())
    given.push_back(described(*info));
  EXPECT_EQ(given, expectedClasses());
}

TEST_F(DescriptionTest, HelpTellsOfEveryMember) {
  for (const char* const name : {"torvan.datamodel", "torvan.session"})
    for (const tyve::COSClassInfo* info :
         tyve::ClassSystem::getInstance().findPackage(intern(name))->getClasses()) {
      EXPECT_NE(info->getDocumentation(), "") << info->getName().text();
      const auto check = [&](const auto& members) {
        for (const auto& member : members)
          EXPECT_NE(member->getDocumentation(), "")
              << info->getName().text() << '.' << member->getName().text();
      };
      check(info->getProperties());
      check(info->getMethods());
    }
}

TEST_F(DescriptionTest, PackagesAndClassesAreThereOnceHoweverOftenTheyAreRegistered) {
  for (const bool isPerCall : {true, false}) {
    tyve::omSetTyveUsingUSM(isPerCall);
    std::vector<std::jthread> callers;
    for (int i = 0; i < 4; ++i) callers.emplace_back(HBInitialize_torvan_datamodel);
  }
  HBTerminate_torvan_datamodel();

  auto& classSystem = tyve::ClassSystem::getInstance();
  std::vector<std::size_t> counts{classSystem.getPackages().size()};
  for (const char* const name :
       {"orb", "orb.zero", "orb.zero.meta", "torvan", "torvan.datamodel", "torvan.session"}) {
    tyve::Package* const package = classSystem.findPackage(intern(name));
    counts.push_back(package->getSubPackages().size());
    counts.push_back(package->getClasses().size());
  }
  EXPECT_EQ(counts, (std::vector<std::size_t>{2, 1, 0, 1, 9, 0, 11, 2, 0, 0, 25, 0, 7}));
}

TEST_F(DescriptionTest, ClassesOfTheModelAreObjectsThatTheHostMayRead) {
  const Host description =
      classNamed(modelName("FieldElem")).getMethod(intern("StaticMetaClass")).call({});
  EXPECT_EQ(description.className(), intern("orb.zero.meta.Class"));
  EXPECT_EQ(get(description, "name").text(), "FieldElem");
  const Host value = call(get(description, "properties"), "at", {number(1)});
  EXPECT_EQ(get(get(value, "type"), "name").text(), "LatticeValue");
  EXPECT_EQ(failureOf([&] { set(description, "name", text("Other")); }),
            "host ReadOnlyProperty(orb.zero.meta.NamedElement,name)");
  EXPECT_EQ(failureOf([&] { call(description, "delete"); }), "CannotModifyFrozenModel");
}

}  // namespace
}  // namespace torvan::datamodel
