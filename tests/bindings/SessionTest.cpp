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
  static Host load(const Host& file) {
    return sessionClass("Session").getMethod(intern("load")).call(std::vector{file});
  }
  Host setOf(const Host& bits) { return call(makesValues, "create_power_set", {colours, bits}); }
  Host variable(const char* name) {
    return call(expressions, "create_variable", {colours, text(name)});
  }

  Host made = sessionClass("Session").construct({});
  Host types = get(made, "type_factory"), makesValues = get(made, "value_factory"),
       expressions = get(made, "expression_factory");
  Host colours = call(types, "create_power_set_type",
                      {text("colours"), Host::strings({"red", "green", "blue"})});
};

TEST_F(SessionTest, SetsTakeAndGiveTheirBitsInSeveralForms) {
  const std::pair<Host, const char*> forms[] = {
      {Host::strings({"red", "blue"}), "101"},
      {Host::cell({text("blue"), number(2), Host::scalar(1.0)}), "111"},
      {Host::cell({}), "000"},
      {Host::row<double>(std::vector{1.0, 3.0}), "101"},
      {text("011"), "011"},
      {text("0x00006"), "110"},
      {number(5), "101"}};
  for (const auto& [given, bits] : forms) EXPECT_EQ(bitsOf("text", {setOf(given)}).text(), bits);
  const auto failure = [&](const Host& given) { return failureOf([&] { setOf(given); }); };
  EXPECT_EQ(failure(Host::strings({"red", "pink"})),
            "InvalidValue('pink',this is no element of the universe)");
  EXPECT_EQ(failure(Host::cell({number(4)})), "InvalidValue(4,this is no element of the universe)");
  EXPECT_EQ(failure(Host::cell({number(0)})), "InvalidValue(0,elements are counted from 1)");
  EXPECT_EQ(failure(number(-1)),
            "InvalidValue(-1,a number that stands for bits is whole and not negative; above 2^53 "
            "it is given as text)");
  EXPECT_EQ(failure(colours), "InvalidValue(a torvan.datamodel.PowerSetType,this is no set)");
  for (const Host& wrong : {number(8), Host::scalar(0.5), Host::scalar(1e300), Host::scalar(true),
                            text("10"), text("012"), text("0x"), text("0x8"), text("0xg"),
                            Host::cell({Host()}), Host(), Host::structure({"a"}, {number(1)})})
    EXPECT_TRUE(failure(wrong).starts_with("InvalidValue")) << failure(wrong);

  const Host six = setOf(number(6));
  EXPECT_EQ(bitsOf("members", {six}), Host::cell({text("green"), text("blue")}));
  EXPECT_EQ(bitsOf("indices", {six}), Host::cell({number(2), number(3)}));
  EXPECT_EQ(bitsOf("hex", {six}).text(), "0x6");
  EXPECT_EQ(bitsOf("count", {six}), number(2));

  Host transaction = call(made, "begin");
  bitsOf("set", {six, Host::strings({"red"})});
  EXPECT_EQ(bitsOf("text", {six}).text(), "001");
  call(transaction, "rollback");
  EXPECT_EQ(bitsOf("text", {six}).text(), "110");
}

TEST_F(SessionTest, TransactionsEndInAnyOrder) {
  const Host sessionModel = get(made, "model");
  const auto size = [&] { return get(sessionModel, "size").number<std::int32_t>(); };
  const std::int32_t before = size();
  Host outer = call(made, "begin");
  variable("x");
  Host inner = call(made, "begin");
  variable("x");
  EXPECT_RAISES(call(outer, "commit"), "TransactionInProgress");
  EXPECT_RAISES(set(made, "history_limit", number(-1)), "InvalidValue(-1)");
  call(inner, "commit");
  EXPECT_RAISES(call(inner, "rollback"), "TransactionEnded");
  inner = call(made, "begin");
  EXPECT_EQ(size(), before + 2);
  outer = Host();  // the last reference rolls back, and ends the inner one
  EXPECT_RAISES(call(inner, "commit"), "TransactionEnded");
  EXPECT_EQ(size(), before);

  outer = call(made, "begin");
  made = types = makesValues = expressions = Host();  // it keeps the session
  EXPECT_EQ(get(outer, "is_open"), Host::scalar(true));
}

TEST_F(SessionTest, FactoriesMakeWholeThingsOrNothing) {
  const Host top = get(colours, "top"), tops = Host::cell({top, top});
  const Host records = call(types, "create_struct_type",
                            {text("R"), Host::structure({"a", "b"}, {colours, colours})});
  const Host record =
      call(makesValues, "create_struct", {records, Host::strings({"a", "b"}), tops});
  EXPECT_EQ(call(record, "eq", {get(records, "top")}), Host::scalar(true));
  const Host pairs = call(types, "create_array_type", {text("A"), colours, number(2)});
  const Host array =
      call(makesValues, "create_array", {pairs, Host::cell({number(2), number(1)}), tops});
  EXPECT_EQ(call(array, "eq", {get(pairs, "top")}), Host::scalar(true));

  const Host x = call(expressions, "create_variable", {records, text("x")});
  const Host builder = call(made, "create_system_builder");
  const Host equation = call(builder, "add_equation",
                             {call(expressions, "create_struct_ref", {x, text("a")}),
                              call(expressions, "create_join", {Host::cell({x, Host(), top})})});
  EXPECT_EQ(classNamed(equation.className()).print(equation), "StructRef(x,'a') = Join(x,,111)");
  const Host system = call(builder, "build");
  EXPECT_EQ(classNamed(system.className()).print(system), "<torvan.datamodel.System, 1 equation>");

  const Host foreign = host(sets), size = get(get(made, "model"), "size");
  const auto failure = [&](const Host& object, std::string_view method, std::vector<Host> given) {
    return failureOf([&] { call(object, method, given); });
  };
  EXPECT_EQ(failure(types, "create_struct_type",
                    {text("F"), Host::strings({"a", "b"}), Host::cell({colours, foreign})}),
            "CannotCreateCrossModelAssociation");
  EXPECT_EQ(failure(makesValues, "create_struct", {records, Host::strings({"a", "a"}), tops}),
            "UniquenessConstraint");
  EXPECT_EQ(failure(makesValues, "create_struct", {records, Host::strings({"a"}), Host()}),
            "InvalidValue(an empty object,there are not as many values as keys)");
  EXPECT_EQ(failure(expressions, "create_join", {Host::cell({text("x")})}),
            "CannotCastIncompatibleTypes(torvan.datamodel.Term)");
  EXPECT_EQ(
      failure(types, "create_array_type", {text("A"), colours, number(-1)}),
      "other WrongArgument(torvan.session.TypeFactory,create_array_type,size,uint16 scalar,-1)");
  for (const Host& wrong : {Host::scalar(65536.0), number(-1), Host::scalar(2.5)})
    EXPECT_EQ(failure(types, "create_power_set_type", {text("F"), wrong}),
              "InvalidValue(" + wrong.describe() + ",a universe has 0 to 65535 elements)");
  EXPECT_EQ(get(get(made, "model"), "size"), size);
}

TEST_F(SessionTest, FilesGiveBackModelsAndValues) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "torvan-session-test";
  std::filesystem::create_directories(folder);
  const Host file = text(folder / "model"), valueFile = text(folder / "values");
  const Host red = setOf(Host::strings({"red"}));
  call(made, "save", {file});
  call(made, "export_values", {Host::structure({"r", "none"}, {red, Host()}), valueFile});

  const Host other = load(file);
  const Host found = call(get(other, "model"), "find", {get(red, "uuid")});
  EXPECT_EQ(bitsOf("members", {found}), Host::cell({text("red")}));
  EXPECT_EQ(bitsOf("text", {get(get(found, "type"), "top")}).text(), "111");
  EXPECT_RAISES(call(made, "export_values", {Host::cell({red}), valueFile}),
                "InvalidValue(a cell,a struct of values by name is needed)");
  const Host values = call(other, "import_values", {valueFile});
  EXPECT_EQ(call(values.field("r"), "eq", {red}), Host::scalar(true));
  EXPECT_FALSE(values.field("none").native()->isValid());

  std::filesystem::resize_file(folder / "model.values", 20);
  EXPECT_TRUE(failureOf([&] { load(file); }).starts_with("CannotImportValues"));
  EXPECT_TRUE(failureOf([&] { load(valueFile); }).starts_with("CannotLoad"));
  std::filesystem::remove_all(folder);
  EXPECT_TRUE(failureOf([&] { load(file); }).starts_with("CannotLoad"));
  EXPECT_TRUE(failureOf([&] { call(made, "save", {file}); }).starts_with("CannotSave"));
}

// Everything that calls share must bear several threads, each with its own session.
TEST_F(SessionTest, ThreadsWithTheirOwnSessionsRunSideBySide) {
  const auto work = [](const std::string& file) {
    for (int round = 0; round < 20; ++round) {
      const Host own = sessionClass("Session").construct({}), factory = get(own, "type_factory");
      const Host type = call(factory, "create_power_set_type", {text("P"), number(2)});
      const Host lists = call(factory, "create_array_type", {text("A"), type, number(8)});
      const Host top = get(lists, "top"), bottom = get(lists, "bottom");
      EXPECT_EQ(call(call(bottom, "join", {top}), "eq", {top}), Host::scalar(true));
      EXPECT_EQ(classNamed(bottom.className()).print(bottom).substr(0, 12), "Array(1 : 00");
      call(own, "save", {text(file)});
      EXPECT_EQ(get(get(load(text(file)), "model"), "size"), get(get(own, "model"), "size"));
    }
  };
  const std::string file = testing::TempDir() + "torvan-session-thread";
  { const std::jthread first(work, file + "1"), second(work, file + "2"); }
  for (const char* const end : {"1", "1.values", "2", "2.values"})
    std::filesystem::remove(file + end);
}

}  // namespace
}  // namespace torvan::datamodel
