#include <torvan/datamodel.h>

#include <gtest/gtest.h>

#include <orb/zero/meta/MetaRegistry.h>
#include <orb/zero/meta/PropertySerializerRegistry.h>
#include <torvan/datamodel/ValueTypes.h>
#include <torvan/datamodel/impl/MetaPackageTorvan_datamodel.h>

#include "tests/orb/Failure.h"

namespace torvan::datamodel {
namespace {

using orb::zero::failureOf;
using orb::zero::PropertySerializerRegistry;
using orb::zero::Value;
using Form = orb::zero::meta::PropertySerializer::Form;

class SerializerTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { MetaPackageTorvan_datamodel::getInstance().ensureInitialized(); }
  static PropertySerializerRegistry::Serializer serializer(std::string_view type,
                                                           std::string_view key = {}) {
    return PropertySerializerRegistry::getInstance().find(type, key);
  }
  static std::string parsing(const PropertySerializerRegistry::Serializer& by,
                             std::string_view text) {
    return failureOf([&] { by->parseValue(text); });
  }
  static std::string refusalOf(std::string_view text, std::string_view type) {
    return "CannotParseValue(" + std::string(text) + (text.empty() ? "" : ",") + std::string(type) +
           ")";
  }
  static orb::zero::meta::Type type(std::string_view name) {
    return orb::zero::meta::MetaRegistry::getInstance().requireType(name);
  }
};

TEST_F(SerializerTest, StandardValuesReadBackAndOtherTextIsRefused) {
  const struct {
    std::string_view type;
    Value value;
    std::string_view text;
    std::vector<std::string_view> refused;
  } cases[] = {
      {"Boolean", true, "true", {"", "1", "True", "true "}},
      {"Integer", -2147483647, "-2147483647", {"", "2147483648", "+1", "0x1", " 1", "1.0"}},
      {"UInteger16", std::uint16_t{65535}, "65535", {"", "65536", "-1", "1e3"}},
      {"UInteger32", std::uint32_t{4294967295}, "4294967295", {"4294967296", "-0x"}},
      {"StdString", std::string("a \"\n\xc3\xa9\0b", 8), {"a \"\n\xc3\xa9\0b", 8}, {}},
      {"String", std::u16string(u"\u00e9\U0001d11e"), "\u00e9\U0001d11e", {}},
  };
  for (const auto& each : cases) {
    const auto found = serializer(each.type);
    ASSERT_TRUE(found) << each.type;
    EXPECT_FALSE(found->isTransient());
    EXPECT_EQ(found->serializeValue(each.value), each.text);
    EXPECT_EQ(found->parseValue(each.text), each.value);
    EXPECT_RAISES(found->serializeValue(boolean3::T),
                  "CannotCastIncompatibleTypes(" + std::string(each.type) + ")");
    for (const std::string_view text : each.refused)
      EXPECT_EQ(parsing(found, text), refusalOf(text, each.type));
  }
  EXPECT_EQ(serializer("Boolean")->form(), Form::Boolean);
  EXPECT_EQ(serializer("Integer")->form(), Form::Number);
  EXPECT_EQ(serializer("String")->form(), Form::Text);
  for (const std::string_view none : {"Ref", "LatticeValuePtr", "torvan.datamodel.Array", ""})
    EXPECT_FALSE(serializer(none)) << none;
}

TEST_F(SerializerTest, LiteralsHaveATextUnderEachKey) {
  const std::pair<std::string_view, std::array<std::string_view, 3>> forms[] = {
      {"", {"T", "F", "NA"}},
      {"ID",
       {"1b9706f9-ede4-3edc-8456-dc2af7f8b889", "e57d6682-d317-3651-8acc-ef1ed04a2f52",
        "c1dd6129-f66a-3ccc-b766-b82744b954d8"}},
      {"PublicID",
       {"torvan.datamodel.boolean3.T", "torvan.datamodel.boolean3.F",
        "torvan.datamodel.boolean3.NA"}}};
  for (const auto& [key, texts] : forms) {
    const auto found = serializer("torvan.datamodel.boolean3", key);
    ASSERT_TRUE(found) << key;
    for (const boolean3 literal : {boolean3::T, boolean3::F, boolean3::NA}) {
      const std::string_view text = texts[static_cast<std::size_t>(literal) - 1];
      EXPECT_EQ(found->serializeValue(literal), text);
      EXPECT_EQ(found->parseValue(text), Value(literal));
      EXPECT_EQ(found->parseOptionalValue(text), Value(boost::optional<boolean3>(literal)));
    }
    for (const std::string_view text : {"", "t", "1"})
      EXPECT_EQ(parsing(found, text), refusalOf(text, "torvan.datamodel.boolean3"));
    EXPECT_RAISES(found->serializeValue(static_cast<boolean3>(0)),
                  "CannotParseValue(0,torvan.datamodel.boolean3)");
  }
  EXPECT_FALSE(serializer("torvan.datamodel.boolean3", "id"));
  EXPECT_EQ(serializer("torvan.datamodel.boolean3")->createDefaultValue(), Value(boolean3::T));
}

TEST_F(SerializerTest, BitsHaveNoText) {
  const auto bits = serializer("BitSet");
  ASSERT_TRUE(bits && bits->isTransient());
  EXPECT_EQ(bits->serializeValue(BitSet(3, 5)), "");
  EXPECT_EQ(bits->parseValue("101"), Value(BitSet()));
  EXPECT_EQ(bits->parseOptionalValue("101"), Value(boost::optional<BitSet>(BitSet())));
  EXPECT_EQ(bits->createDefaultValue(), Value(BitSet()));
  EXPECT_EQ(bits->createEmptyOptionalValue(), Value(boost::optional<BitSet>()));
}

TEST_F(SerializerTest, ValuesAreCombinedInOrderOrAsASet) {
  const auto bits = serializer("BitSet");
  const Value given[] = {BitSet(2, 2), BitSet(2, 1), BitSet(2, 2)};
  EXPECT_EQ(bits->combineAsUnmanagedSequenceValue(type("BitSet"), given),
            Value(std::vector<BitSet>{BitSet(2, 2), BitSet(2, 1), BitSet(2, 2)}));
  EXPECT_EQ(bits->combineAsUnmanagedSetValue(type("BitSet"), given),
            Value(std::set<BitSet>{BitSet(2, 1), BitSet(2, 2)}));

  const Value mixed[] = {boolean3::NA, BitSet()};
  EXPECT_RAISES(serializer("torvan.datamodel.boolean3")
                    ->combineAsUnmanagedSequenceValue(type("torvan.datamodel.boolean3"), mixed),
                "CannotCastIncompatibleTypes(torvan.datamodel.boolean3)");
}

}  // namespace
}  // namespace torvan::datamodel
