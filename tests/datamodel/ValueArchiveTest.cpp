#include <sstream>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

class ValueArchiveTest : public SessionTest {
 protected:
  static std::string textOf(const std::vector<NamedValue>& named) {
    std::ostringstream out;
    exportValues(named, out);
    return out.str();
  }
  static std::vector<NamedValue> read(const std::string& text, const Model& into) {
    std::istringstream in(text);
    return importValues(in, into);
  }
  static void restore(const std::string& text, const std::vector<NamedValue>& named) {
    std::istringstream in(text);
    restoreValues(in, named);
  }

  /// A value of each kind, with all that may be odd about it.
  std::vector<NamedValue> everyKind() {
    const PowerSetType colours = types.createPowerSetType("P", {"red", "\"\\\n\u00e9", ""});
    const PowerSetType same = sets(70);  // of the same name
    const StructType inner = types.createStructType("S", {"b", "a"}, {colours, same});
    const ArrayType table = types.createArrayType("A", inner, 3);
    const PowerSet shared = set(colours, {1, 3});
    const Struct sparse = values.createStruct(inner, {"b", "stray"}, {shared, {}});
    const PowerSet longer = values.createPowerSet(colours, bitsOf(70, {1, 4, 65, 70}));
    return {{"set", shared},
            {"longer", longer},
            {"shorter", values.createPowerSet(same, bitsOf(2, {2}))},
            {"no bits", values.createPowerSet(types.createPowerSetType("", 0), BitSet())},
            {"untyped", values.createPowerSet({}, bitsOf(64, {64}))},
            {"", LatticeValue()},
            {"sparse", sparse},
            {"table", values.createArray(table, {1, 3, 65535}, {sparse, inner->getTop(), {}})},
            {"untyped table", values.createArray({}, {2, 7}, {longer, longer})},
            {"no fields", values.createStruct({}, {}, {})},
            {"no elements", types.createArrayType("", {}, 0)->getTop()},
            {"range", Array(table->getTop()).at(2, 3)},
            {"again", shared}};
  }

  Session other;
};

TEST_F(ValueArchiveTest, EveryKindOfValueComesBackEqual) {
  const auto written = everyKind();
  const std::string text = textOf(written);
  const auto found = read(text, other.model());
  ASSERT_EQ(found.size(), written.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    const auto& [name, value] = found[i];
    if (value && value->hasType() && name != "table") {  // its empty element cannot be compared
      EXPECT_TRUE(value.eq(written[i].value)) << name;
    }
  }
  EXPECT_EQ(textOf(found), text);
  EXPECT_TRUE(found.front().value == found.back().value);
  const Struct sparse{found[6].value};
  EXPECT_TRUE(sparse->getValues()["b"]->getValue() == found.front().value);
  EXPECT_FALSE(sparse->getValues().contains("a"));
}

TEST_F(ValueArchiveTest, EachValueHasALineAndEachTypeOne) {
  const PowerSetType colours = types.createPowerSetType("colours", {"red", "green", "blue"});
  const StructType pair = types.createStructType("pair", {"b", "a"}, {colours, colours});
  const PowerSet x = set(colours, {1, 3});
  EXPECT_EQ(textOf({{"x", values.createStruct(pair, {"a", "b"}, {x, x})}, {"y", set(colours, {})}}),
            R"({"format":"torvan.values","version":1,"types":{
"colours":{"name":"colours","size":3,"universe":["red","green","blue"]},
"pair":{"name":"pair","fields":{"a":"colours","b":"colours"}}
},"values":{
"x":{"type":"pair","fields":{
 "a":{"id":1,"type":"colours","size":3,"bits":"5"},
 "b":1}},
"y":{"type":"colours","size":3,"bits":"0"}
}}
)");
}

/// Sharing keeps the text small: as a tree this had 2^40 parts. Nesting costs no recursion.
TEST_F(ValueArchiveTest, SharedAndDeepValuesAreWrittenOnce) {
  LatticeValue wide = set(sets(3), {2}), deep = wide;
  for (int i = 0; i < 40; ++i) wide = values.createArray({}, {1, 2}, {wide, wide});
  for (int i = 0; i < 100000; ++i) deep = values.createStruct({}, {"f"}, {deep});
  const std::string text = textOf({{"wide", wide}, {"deep", deep}});
  EXPECT_EQ(textOf(read(text, other.model())), text);
}

TEST_F(ValueArchiveTest, WhatCannotBeReadBackIsNotWritten) {
  const PowerSet x = set(sets(3), {1});
  const Array zero = values.createArray({}, {0}, {x}), loop = values.createArray({}, {1}, {x});
  *loop->getValues()[1].ref() = loop;
  const Struct mixed = values.createStruct({}, {"f"}, {x});
  mixed->setType(x->getType());
  const auto failure = [&](std::vector<NamedValue> named) {
    return failureOf([&] { textOf(named); });
  };
  EXPECT_EQ(failure({{"x", x}, {"x", x}}),
            "CannotExportValues(x,There are two values of this name.)");
  EXPECT_EQ(failure({{"z", zero}}), "CannotExportValues(z,It has an array with an index 0.)");
  EXPECT_EQ(failure({{"x", x}, {"l", loop}}), "CannotExportValues(l,It contains itself.)");
  EXPECT_EQ(failure({{"m", values.createArray({}, {1}, {mixed})}}),
            "CannotExportValues(m,It is of another kind than its type.)");
  EXPECT_EQ(failure({{"p", PowerSet::createProxy(model, model.newUuid())}}).substr(0, 21),
            "CannotExportValues(p,");
  EXPECT_EQ(failure({{"\xff", x}}).substr(0, 19), "CannotExportValues(");
  std::ostream closed(nullptr);
  EXPECT_EQ(failureOf([&] { exportValues({}, closed); }).substr(0, 19), "CannotExportValues(");
}

TEST_F(ValueArchiveTest, ErrorsNameTheirPlaceAndLeaveNothing) {
  const std::string head = R"({"format":"torvan.values","version":1,)";
  const std::string type = "\"types\":{\n\"P\":{\"name\":\"P\",\"size\":5,\"universe\":[]}},\n";
  const auto value = [&](const std::string& x) {
    return head + type + "\"values\":{\"x\":" + x + "}}";
  };
  const std::pair<std::string, std::string> cases[] = {
      {"", "line 1,The document is empty."},
      {R"({"model":1})", "line 1, /model,The file does not begin with its format."},
      {R"({"format":"torvan.model"})", "line 1, /format,The file is of another format."},
      {R"({"format":"torvan.values","version":2})", "line 1, /version,Only version 1 can be read."},
      {head + "\"types\":{}}", "line 1,The file is not complete."},
      {head + "\"types\":{\"A\":{\"size\":2,\"element\":\"B\"}}}",
       "line 1, /types/A/element,There is no type of this label before."},
      {head + "\"types\":{\"A\":{\"size\":65536}}}",
       "line 1, /types/A/size,The number is not whole, or out of range."},
      {value(R"({"type":"Q"})"), "line 3, /values/x/type,There is no type of this label before."},
      {value(R"({"type":"P","size":5,"bits":"0g"})"),
       "line 3, /values/x,The bits are not hexadecimal."},
      {value(R"({"type":"P","size":5,"bits":"20"})"),
       "line 3, /values/x,The bits are more than the size."},
      {value(R"({"size":18446744073709551615,"bits":"0"})"),
       "line 3, /values/x,The size asks for another number of digits."},
      {value(R"({"type":"P","bits":"1f"})"), "line 3, /values/x,The value is not complete."},
      {value(R"({"type":"P","fields":{}})"),
       "line 3, /values/x,The value is of another kind than its type."},
      {value(R"({"elements":{"1":{"fields":{"f":{"size":"5"}}}}})"),
       "line 3, /values/x/elements/1/fields/f/size,This has no meaning here."},
      {value(R"({"elements":{"0":null}})"), "line 3, /values/x/elements/0,This is no index."},
      {value(R"({"elements":{"01":null}})"), "line 3, /values/x/elements/01,This is no index."},
      {value(R"({"elements":{"1":1}})"),
       "line 3, /values/x/elements/1,There is no value of this id before."},
      {value("null,\n\"x\":null"), "line 4, /values/x,There are two entries of this name."},
      {value(R"({"fields":{},"elements":{}})"), "line 3, /values/x/elements,It is of two kinds."},
      {value("\"\xff\""), "line 3, /values/x,Invalid encoding in string."}};
  const std::string before = snapshot(model);
  for (const auto& [text, problem] : cases) {
    EXPECT_RAISES(read(text, model), "CannotImportValues(" + problem + ")") << text;
    EXPECT_EQ(snapshot(model), before);
  }
  std::istringstream closed;
  closed.setstate(std::ios::failbit);
  EXPECT_NE(failureOf([&] { importValues(closed, model); }), "none");
}

/// Whatever happens to a byte, what is read is whole: it can be written and read again.
TEST_F(ValueArchiveTest, MutilatedTextIsRefusedOrRead) {
  const std::string text = textOf(everyKind());
  std::size_t readable = 0;
  const auto check = [&](const std::string& mutilated) {
    const Model fresh = Model::create();
    try {
      const auto found = read(mutilated, fresh);
      ++readable;
      const std::string again = textOf(found);
      EXPECT_EQ(textOf(read(again, other.model())), again) << mutilated;
    } catch (const orb::zero::Exception& exception) {
      EXPECT_EQ(exception.getIdentifier(), "CannotImportValues");
      EXPECT_EQ(fresh.size(), 0U);
    }
  };
  for (std::size_t place = 0; place + 2 < text.size(); ++place) {
    const std::size_t before = readable;
    check(text.substr(0, place));
    EXPECT_EQ(readable, before) << "a file that ends too early: " << place;
    for (const char flip : {'\1', '\4', '\x10', '\x20', '\x80'}) {
      std::string mutilated = text;
      mutilated[place] = static_cast<char>(mutilated[place] ^ flip);
      check(mutilated);
    }
    check(text.substr(0, place) + text.substr(place + 1));
  }
}

TEST_F(ValueArchiveTest, BitsComeBackIntoWhatIsThere) {
  auto named = everyKind();
  const std::string text = textOf(named), before = snapshot(model);
  {
    const Transaction loaded(model);  // a loaded model has sets without bits
    for (const auto& [id, set] : powerSetsOf(model)) PowerSet(set)->setValue({});
    std::reverse(named.begin(), named.end());
    restore(text, named);
    std::reverse(named.begin(), named.end());
    EXPECT_EQ(textOf(named), text);
  }
  EXPECT_EQ(snapshot(model), before);

  const auto sets = powerSetsOf(model);
  const std::string bits = textOf(sets);
  for (const auto& [id, set] : sets) PowerSet(set)->setValue({});
  restore(bits, sets);
  EXPECT_EQ(snapshot(model), before);
}

TEST_F(ValueArchiveTest, RecordTypesHaveNoSizeOfTheirOwn) {
  const StructType type = make<StructType>();  // which has the size 0, where factories give 1
  const std::vector<NamedValue> named{{"v", values.createStruct(type, {}, {})}};
  EXPECT_EQ(failureOf([&] { restore(textOf(named), named); }), "none");
}

TEST_F(ValueArchiveTest, BitsForAnotherStructureAreRefused) {
  const PowerSetType p = sets(3), q = types.createPowerSetType("Q", 3);
  const LatticeValue x = set(p, {1}), y = set(p, {2});
  const auto pair = [&](const LatticeValue& a, const LatticeValue& b) {
    return LatticeValue(values.createArray({}, {1, 2}, {a, b}));
  };
  std::string text = textOf({{"v", pair(x, y)}});
  const auto failure = [&](const std::vector<NamedValue>& named) {
    const std::string before = snapshot(model);
    const std::string raised = failureOf([&] { restore(text, named); });
    EXPECT_EQ(snapshot(model), before);
    return raised;
  };
  const auto at = [](const std::string& place, const std::string& problem) {
    return "CannotImportValues(/values/" + place + "," + problem + ")";
  };
  EXPECT_EQ(failure({{"w", x}}), at("w", "The text has no such value, or not so many."));
  EXPECT_EQ(failure({}), at("v", "The text has a value of this name too many."));
  EXPECT_EQ(failure({{"v", x}}), at("v", "It is of another kind."));
  EXPECT_EQ(failure({{"v", LatticeValue()}}), at("v", "There is a value on one side only."));
  EXPECT_EQ(failure({{"v", pair(x, set(q, {}))}}), at("v/elements/2", "It is of another type."));
  EXPECT_EQ(failure({{"v", pair(x, x)}}),
            at("v/elements/2", "It stands elsewhere as well, where it is another value."));
  EXPECT_EQ(failure({{"v", values.createArray({}, {1, 3}, {x, y})}}),
            at("v/elements/3", "It has other fields or indices."));
  text = textOf({{"v", pair(x, x)}});
  EXPECT_EQ(failure({{"v", pair(x, y)}}),
            at("v/elements/2", "It stands elsewhere as well, where it is another value."));
}

}  // namespace
}  // namespace torvan::datamodel
