#include <filesystem>
#include <thread>

#include "tests/bindings/HostTest.h"

namespace torvan::datamodel {
namespace {

class SessionTest : public HostTest {
 protected:
  static const tyve::COSClassInfo& sessionClass(std::string_view name) {
    return classNamed(intern("torvan.session." + std::string(name)));
  }
  static Host bitsOf(std::string_view form, std::vector<Host> given) {
    return sessionClass("Bits").getMethod(intern(form)).call(given);
  }
  static std::vector<std::string> textsOf(const Host& list) {
    std::vector<std::string> texts;
    for (const Host& text : list.cells()) texts.push_back(text.text());
    return texts;
  }

  Host made = sessionClass("Session").construct({});
  Host types = get(made, "type_factory"), makesValues = get(made, "value_factory"),
       expressions = get(made, "expression_factory");
  Host colours = call(types, "create_power_set_type",
                      {text("colours"), Host::strings({"red", "green", "blue"})});
};

// What scripts rely on: constructors with "new", properties (= for a writable one), methods with
// the names of their arguments, "static" ones, and * for those that may run long.
std::string described(const tyve::COSClassInfo& info) {
  std::string text = info.isAbstract() ? "" : "new ";
  text += std::string(info.getName().last()) + ":";
  for (const auto& property : info.getProperties())
    text += " " + property->getName().text() + (property->isReadOnly() ? "" : "=");
  for (const auto& method : info.getMethods())
    text += std::string(method->isStatic() ? " static" : "") + " " + method->getName().text() +
            "(" + method->getSignature().argumentNames + ")" + (method->isLong() ? "*" : "");
  return text;
}

TEST_F(SessionTest, ClassesHaveTheirMembers) {
  std::vector<std::string> given;
  for (const tyve::COSClassInfo* info :
       tyve::ClassSystem::getInstance().findPackage(intern("torvan.session"))->getClasses())
    given.push_back(described(*info));
  EXPECT_EQ(
      given,
      (std::vector<std::string>{
          "Bits: static members(set) static indices(set) static text(set) static hex(set) "
          "static count(set) static set(set bits)",
          "ExpressionFactory: create_variable(self type name) create_join(self terms) "
          "create_meet(self terms) create_struct_ref(self expr field) "
          "create_index_ref(self expr start opt_end) "
          "create_conditional(self ctrl operand_true operand_false) create_prune(self expr fields)",
          "new Session: model type_factory value_factory expression_factory history_limit= "
          "create_system_builder(self) begin(self) undo(self)* redo(self)* reclaim(self)* "
          "find(self type opt_filter) save(self path)* static load(path)* "
          "export_values(self values path) import_values(self path)*",
          "SystemBuilder: add_equation(self lhs rhs) build(self)",
          "Transaction: is_open commit(self) rollback(self)*",
          "TypeFactory: create_power_set_type(self name universe) "
          "create_struct_type(self name fields opt_types) "
          "create_array_type(self name elem_type size)*",
          "ValueFactory: create_power_set(self type bits) "
          "create_struct(self type fields opt_values) create_array(self type indices values)"}));
}

TEST_F(SessionTest, SetsTakeAndGiveTheirBitsInSeveralForms) {
  const auto bits = [&](const Host& given) {
    return bitsOf("text", {call(makesValues, "create_power_set", {colours, given})}).text();
  };
  EXPECT_EQ(bits(Host::strings({"red", "blue"})), "101");
  EXPECT_EQ(bits(Host::cell({text("blue"), number(2), Host::scalar(1.0)})), "111");
  EXPECT_EQ(bits(Host::cell({})), "000");
  EXPECT_EQ(bits(Host::row<double>(std::vector{1.0, 3.0})), "101");
  EXPECT_EQ(bits(text("011")), "011");
  EXPECT_EQ(bits(text("0x00006")), "110");
  EXPECT_EQ(bits(number(5)), "101");
  const auto failure = [&](const Host& given) { return failureOf([&] { bits(given); }); };
  EXPECT_EQ(failure(Host::strings({"red", "pink"})),
            "InvalidValue('pink',this is no element of the universe)");
  EXPECT_EQ(failure(Host::cell({number(4)})), "InvalidValue(4,this is no element of the universe)");
  EXPECT_EQ(failure(Host::cell({number(0)})), "InvalidValue(0,elements are counted from 1)");
  for (const Host& wrong :
       {number(-1), number(8), Host::scalar(0.5), Host::scalar(1e300), Host::scalar(true),
        text("10"), text("012"), text("0x"), text("0x8"), text("0xg"), Host::cell({Host()}), Host(),
        colours, Host::structure({"a"}, {number(1)})})
    EXPECT_TRUE(failure(wrong).starts_with("InvalidValue")) << failure(wrong);

  const Host set = call(makesValues, "create_power_set", {colours, number(6)});
  EXPECT_EQ(textsOf(bitsOf("members", {set})), (std::vector<std::string>{"green", "blue"}));
  EXPECT_EQ(bitsOf("indices", {set}), Host::cell({number(2), number(3)}));
  EXPECT_EQ(bitsOf("hex", {set}).text(), "0x6");
  EXPECT_EQ(bitsOf("count", {set}), number(2));

  Host transaction = call(made, "begin");
  bitsOf("set", {set, Host::strings({"red"})});
  EXPECT_EQ(bitsOf("text", {set}).text(), "001");
  call(transaction, "rollback");
  EXPECT_EQ(bitsOf("text", {set}).text(), "110");
}

TEST_F(SessionTest, TransactionsEndInAnyOrder) {
  const Host sessionModel = get(made, "model");
  const auto size = [&] { return get(sessionModel, "size").number<std::int32_t>(); };
  const auto add = [&] { call(expressions, "create_variable", {colours, text("x")}); };
  const auto isOpen = [&](const Host& each) { return get(each, "is_open").number<bool>(); };
  const std::int32_t before = size();

  Host outer = call(made, "begin");
  add();
  Host inner = call(made, "begin");
  add();
  EXPECT_EQ(failureOf([&] { call(outer, "commit"); }), "TransactionInProgress");
  EXPECT_EQ(failureOf([&] { set(made, "history_limit", number(1)); }), "TransactionInProgress");
  EXPECT_EQ(failureOf([&] { call(made, "undo"); }), "TransactionInProgress");
  call(inner, "commit");
  for (const char* const again : {"commit", "rollback"})
    EXPECT_EQ(failureOf([&] { call(inner, again); }), "TransactionEnded");
  EXPECT_EQ(size(), before + 2);
  call(outer, "rollback");
  EXPECT_EQ(size(), before);

  outer = call(made, "begin");
  inner = call(made, "begin");
  add();
  outer = Host();  // the last reference rolls back, and ends the inner one
  EXPECT_FALSE(isOpen(inner));
  EXPECT_EQ(failureOf([&] { call(inner, "commit"); }), "TransactionEnded");
  EXPECT_EQ(size(), before);

  outer = call(made, "begin");
  made = types = makesValues = expressions = Host();  // it keeps the session
  EXPECT_TRUE(isOpen(outer));
  call(outer, "commit");
  EXPECT_EQ(size(), before);
}

TEST_F(SessionTest, HistoryIsReachedFromTheSessionAndItsModel) {
  EXPECT_EQ(get(made, "history_limit"), number(0));
  set(made, "history_limit", number(5));
  EXPECT_EQ(failureOf([&] { set(made, "history_limit", number(-1)); }), "InvalidValue(-1)");
  const Host x = call(expressions, "create_variable", {colours, text("x")});
  const Host sessionModel = get(made, "model"), id = get(x, "uuid");
  EXPECT_EQ(call(sessionModel, "find", {id}), x);
  EXPECT_EQ(call(sessionModel, "undo"), Host::scalar(true));
  EXPECT_EQ(call(x, "isValid"), Host::scalar(false));
  EXPECT_EQ(call(sessionModel, "find", {id}).className(), intern("orb.zero.ModelElement"));
  EXPECT_EQ(get(sessionModel, "redoSteps"), number(1));
  EXPECT_EQ(call(made, "redo"), Host::scalar(true));
  EXPECT_EQ(call(made, "redo"), Host::scalar(false));
  EXPECT_EQ(call(x, "isValid"), Host::scalar(true));
}

TEST_F(SessionTest, FactoriesMakeWholeThingsOrNothing) {
  const Host records = call(types, "create_struct_type",
                            {text("R"), Host::structure({"a", "b"}, {colours, colours})});
  const Host top = get(colours, "top");
  const Host record = call(makesValues, "create_struct",
                           {records, Host::strings({"a", "b"}), Host::cell({top, top})});
  EXPECT_EQ(call(record, "eq", {get(records, "top")}), Host::scalar(true));
  const Host pairs = call(types, "create_array_type", {text("A"), colours, number(2)});
  const Host array = call(makesValues, "create_array",
                          {pairs, Host::cell({number(2), number(1)}), Host::cell({top, top})});
  EXPECT_EQ(call(array, "eq", {get(pairs, "top")}), Host::scalar(true));

  const Host x = call(expressions, "create_variable", {records, text("x")});
  const Host builder = call(made, "create_system_builder");
  const Host equation = call(builder, "add_equation",
                             {call(expressions, "create_struct_ref", {x, text("a")}),
                              call(expressions, "create_join", {Host::cell({x, Host(), top})})});
  EXPECT_EQ(classNamed(equation.className()).print(equation), "StructRef(x,'a') = Join(x,,111)");
  const Host system = call(builder, "build");
  EXPECT_EQ(classNamed(system.className()).print(system), "<torvan.datamodel.System, 1 equations>");

  const Host size = get(get(made, "model"), "size");
  const Host foreign = host(sets), list = Host::cell({colours, foreign});
  const auto failure = [&](const Host& object, std::string_view method, std::vector<Host> given) {
    return failureOf([&] { call(object, method, given); });
  };
  EXPECT_EQ(failure(types, "create_struct_type", {text("F"), Host::strings({"a", "b"}), list}),
            "CannotCreateCrossModelAssociation");
  EXPECT_EQ(failure(types, "create_array_type", {text("F"), foreign, number(2)}),
            "CannotCreateCrossModelAssociation");
  EXPECT_EQ(failure(makesValues, "create_struct",
                    {records, Host::strings({"a", "a"}), Host::cell({top, top})}),
            "UniquenessConstraint");
  EXPECT_EQ(failure(makesValues, "create_struct", {records, Host::strings({"a"}), Host()}),
            "InvalidValue(an empty object,there are not as many as names)");
  EXPECT_EQ(failure(builder, "add_equation", {x, host(sets->getTop())}),
            "CannotCreateCrossModelAssociation");
  EXPECT_EQ(failure(expressions, "create_join", {Host::cell({text("x")})}),
            "CannotCastIncompatibleTypes(torvan.datamodel.Term)");
  EXPECT_EQ(
      failure(types, "create_array_type", {text("A"), colours, number(-1)}),
      "host WrongArgument(torvan.session.TypeFactory,create_array_type,size,uint16 scalar,-1)");
  EXPECT_EQ(get(get(made, "model"), "size"), size);
}

TEST_F(SessionTest, ElementsAreFoundByTheirProperties) {
  const auto variable = [&](const char* name) {
    return call(expressions, "create_variable", {colours, text(name)});
  };
  const Host x = variable("x"), y = variable("y");
  const Host join = call(expressions, "create_join", {Host::cell({y, x})});
  const auto find = [&](std::string_view type, std::vector<std::string> names = {},
                        std::vector<Host> wanted = {}) {
    return call(made, "find",
                {text("torvan.datamodel." + std::string(type)),
                 Host::structure(std::move(names), std::move(wanted))});
  };
  EXPECT_EQ(find("Expression"), Host::cell({x, y, join}));
  EXPECT_EQ(find("Variable", {"name", "type"}, {text("y"), colours}), Host::cell({y}));
  EXPECT_EQ(find("Join", {"operands"}, {x}), Host::cell({join}));
  EXPECT_EQ(find("PowerSetType", {"universe"}, {text("blue")}), Host::cell({colours}));
  EXPECT_EQ(find("PowerSetType", {"universe", "name"}, {text("blue"), text("")}), Host::cell({}));
  EXPECT_EQ(find("Term", {"type"}, {Host()}), Host::cell({}));
  const Host description =
      classNamed(modelName("Variable")).getMethod(intern("StaticMetaClass")).call({});
  EXPECT_EQ(call(made, "find", {description}), Host::cell({x, y}));
  EXPECT_EQ(failureOf([&] { find("Variable", {"colour"}, {Host()}); }),
            "NoSuchProperty(torvan.datamodel.Variable,colour)");
  EXPECT_EQ(failureOf([&] { find("Colour"); }), "NoSuchType(torvan.datamodel.Colour)");
  EXPECT_EQ(failureOf([&] { find("Variable", {"name"}, {number(1)}); }),
            "host WrongValue(TyveFactoryString scalar,1)");
}

TEST_F(SessionTest, FilesGiveBackModelsAndValues) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "torvan-session-test";
  std::filesystem::create_directories(folder);
  const Host file = text(folder / "model"), valueFile = text(folder / "values");
  const Host red = call(makesValues, "create_power_set", {colours, Host::strings({"red"})});
  call(made, "save", {file});
  call(made, "export_values", {Host::structure({"r", "none"}, {red, Host()}), valueFile});

  const tyve::Method& load = sessionClass("Session").getMethod(intern("load"));
  const Host other = load.call(std::vector{file});
  const Host found = call(get(other, "model"), "find", {get(red, "uuid")});
  EXPECT_EQ(textsOf(bitsOf("members", {found})), std::vector<std::string>{"red"});
  EXPECT_EQ(bitsOf("text", {get(get(found, "type"), "top")}).text(), "111");
  const Host values = call(other, "import_values", {valueFile});
  EXPECT_EQ(call(values.field("r"), "eq", {red}), Host::scalar(true));
  EXPECT_FALSE(values.field("none").native()->isValid());

  std::filesystem::resize_file(folder / "model.values", 20);
  EXPECT_TRUE(failureOf([&] { load.call(std::vector{file}); }).starts_with("CannotImportValues"));
  EXPECT_TRUE(failureOf([&] { load.call(std::vector{valueFile}); }).starts_with("CannotLoad"));
  std::filesystem::remove_all(folder);
  EXPECT_TRUE(failureOf([&] { load.call(std::vector{file}); }).starts_with("CannotLoad"));
  EXPECT_TRUE(failureOf([&] { call(made, "save", {file}); }).starts_with("CannotSave"));
}

// Everything that calls share must bear several threads, each with its own session.
TEST_F(SessionTest, ThreadsWithTheirOwnSessionsRunSideBySide) {
  const auto work = [](const std::string& file) {
    for (int round = 0; round < 20; ++round) {
      const Host own = sessionClass("Session").construct({});
      const Host type = call(get(own, "type_factory"), "create_power_set_type",
                             {text("P"), Host::strings({"a", "b"})});
      const Host lists =
          call(get(own, "type_factory"), "create_array_type", {text("A"), type, number(8)});
      const Host top = get(lists, "top"), bottom = get(lists, "bottom");
      EXPECT_EQ(call(bottom, "le", {top}).className(), modelName("boolean3"));
      EXPECT_EQ(call(call(bottom, "join", {top}), "eq", {top}), Host::scalar(true));
      EXPECT_EQ(classNamed(bottom.className()).print(bottom).substr(0, 12), "Array(1 : 00");
      const auto size = get(get(own, "model"), "size").number<std::int32_t>();
      call(own, "save", {text(file)});
      const Host loaded =
          sessionClass("Session").getMethod(intern("load")).call(std::vector{text(file)});
      EXPECT_EQ(get(get(loaded, "model"), "size"), Host::scalar(size));
    }
  };
  const std::string file = testing::TempDir() + "torvan-session-thread";
  { const std::jthread first(work, file + "1"), second(work, file + "2"); }
  for (const char* const end : {"1", "1.values", "2", "2.values"})
    std::filesystem::remove(file + end);
}

}  // namespace
}  // namespace torvan::datamodel
