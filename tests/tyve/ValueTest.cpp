#include "tests/tyve/Zoo.h"

namespace tyve {
namespace {

TEST(ValueTest, ArraysAreReadByColumns) {
  const double numbers[] = {1, 2, 3, 4, 5, 6};
  const Value array = Value::array<double>(numbers, {2, 3});
  EXPECT_EQ(array.at(1, 2), Value::scalar(6.0));
  EXPECT_EQ(array.at(1), Value::scalar(2.0));
  EXPECT_EQ(array.describe(), "a 2-by-3 double");
  EXPECT_RAISES(array.at(2, 0), "IndexOutOfRange(2,2)");
  EXPECT_RAISES(array.at(0, std::size_t{1} << 63), "IndexOutOfRange(9223372036854775808,3)");
  EXPECT_RAISES(array.number<double>(), "WrongValue(double scalar,a 2-by-3 double)");
  EXPECT_RAISES(array.numbers<std::int32_t>(), "WrongValue(int32,a 2-by-3 double)");
  EXPECT_RAISES(Value::array<double>(numbers, {2, 2}), "SizeMismatch(2,2,6)");
  EXPECT_NE(array, Value::array<double>(numbers, {3, 2}));
  EXPECT_NE(Value::array<bool>({}, {}), Value::array<double>({}, {}));
}

TEST(ValueTest, TextsCountCharacters) {
  const Value row = Value::text("\xC3\xA4\xF0\x9F\x90\x95"), empty = Value::text("");
  EXPECT_EQ(row.size(), (Size{1, 2}));
  EXPECT_EQ(empty.text(), "");
  EXPECT_TRUE(empty.isEmpty());
  EXPECT_NE(Value::text("NA"), Value::strings({"NA"}));
  EXPECT_EQ(Value::strings({"a", "b"}).at(1).text(), "b");
  EXPECT_RAISES(Value::strings({"a", "b"}).text(), "WrongValue(char,a 1-by-2 string)");
}

TEST(ValueTest, StructsKeepTheOrderOfTheirFields) {
  const Value one = Value::scalar(1.0), two = Value::scalar(2.0), text = Value::text("t");
  const Value array = Value::structure({"z", "a"}, {one, text, two, text}, {1, 2});
  EXPECT_EQ(array.fields()[0], "z");
  EXPECT_EQ(array.field("z", 1), two);
  EXPECT_EQ(array.field(1, 1), text);
  EXPECT_EQ(array.at(1), Value::structure({"z", "a"}, {two, text}));
  EXPECT_NE(array.at(1), Value::structure({"z", "b"}, {two, text}));
  EXPECT_RAISES(array.field("b"), "UnknownField(b)");
  EXPECT_RAISES(array.field("a", 2), "IndexOutOfRange(2,2)");
  EXPECT_RAISES(Value::structure({"a"}, {one, two}), "SizeMismatch(1,1,2)");
  const Value cell = Value::cell({array, text});
  EXPECT_EQ(cell.cells()[0], array);
  EXPECT_EQ(cell.at(1), Value::cell({text}));
}

TEST(ValueTest, ObjectsShareAndReleaseTheirNativeObject) {
  const Name name = intern("test.zoo.Dog");
  const auto native = std::make_shared<Animal>("d");
  {
    const Value dog = Value::object(name, native), copy = dog;
    EXPECT_EQ(native.use_count(), 3);
    EXPECT_EQ(dog, Value::object(name, std::make_shared<Animal>("d")));
    EXPECT_NE(dog, Value::object(name, std::make_shared<Animal>("e")));
    EXPECT_NE(dog, Value::object(intern("test.zoo.Cat"), native));
    EXPECT_EQ(Value::objects(name, {copy, dog}, {2, 1}).at(1).native(), native);
  }
  EXPECT_EQ(native.use_count(), 1);
}

TEST(ValueTest, KindsOfEmptyAreToldApart) {
  const Name dog = intern("test.zoo.Dog");
  const Value classless, empty = Value::empty(dog), invalid = Zoo::makeAnimal("Dog", "", false);
  EXPECT_TRUE(classless.isEmpty() && empty.isEmpty() && !invalid.isEmpty());
  EXPECT_EQ(classless.className(), Name());
  EXPECT_EQ(empty.className(), dog);
  EXPECT_TRUE(classless == Value() && classless != empty && empty != invalid);
  EXPECT_RAISES(empty.native(), "WrongValue(object,an empty test.zoo.Dog)");
}

}  // namespace
}  // namespace tyve
