#include <cmath>

#include "tests/tyve/Zoo.h"

namespace tyve {
namespace {

/// What becomes of a value under a type word; "-" when it does not fit.
std::string converted(std::string_view word, const Value& value) {
  Zoo::classOf("Dog");
  const auto fit = ClassSystem::getInstance().types().convert(value, intern(word));
  return fit ? fit->className().text() + " " + fit->describe() : "-";
}

TEST(ConversionTest, IntegersAreNeverWrapped) {
  constexpr std::string_view uint16 = "uint16 scalar", int32 = "int32 scalar";
  EXPECT_EQ(converted(uint16, Value::scalar(65535.0)), "uint16 65535");
  EXPECT_EQ(converted(uint16, Value::scalar(7)), "uint16 7");
  EXPECT_EQ(converted(int32, Value::scalar(-2147483648.0)), "int32 -2147483648");
  for (const double wrong : {2.5, 1e300, std::nan(""), double(INFINITY), 2147483648.0}) {
    EXPECT_EQ(converted(uint16, Value::scalar(wrong)), "-") << wrong;
    EXPECT_EQ(converted(int32, Value::scalar(wrong)), "-") << wrong;
  }
  for (const Value& wrong : {Value::scalar(65536.0), Value::scalar(-1), Value::scalar(true),
                             Value::array<double>({}, {})})
    EXPECT_EQ(converted(uint16, wrong), "-");
  EXPECT_EQ(converted("logical scalar", Value::scalar(1.0)), "-");
  EXPECT_EQ(converted("logical scalar", Value::scalar(true)), "logical true");
}

TEST(ConversionTest, TextsTakeSeveralForms) {
  constexpr std::string_view scalar = "TyveFactoryString scalar";
  EXPECT_EQ(converted("char", Value::strings({"x"})), "char 'x'");
  EXPECT_EQ(converted("char", Value::strings({"a", "b"})), "-");
  EXPECT_EQ(converted(scalar, Value::text("x")), "string 'x'");

  using List = factory::Marshaler<factory::StringCollectionPolicy>;
  const std::vector<std::string> both{"a", "b"};
  EXPECT_EQ(List::fromHost(Value::strings({"a", "b"})), both);
  EXPECT_EQ(List::fromHost(Value::cell({Value::text("a"), Value::text("b")})), both);
  EXPECT_EQ(List::fromHost(Value::text("ab")), std::vector<std::string>{"ab"});
  EXPECT_TRUE(List::fromHost(Value::cell({})).empty());
  EXPECT_RAISES(List::fromHost(Value::cell({Value::text("a"), Value::scalar(1)})),
                "WrongValue(TyveFactoryString vector,a 1-by-2 cell)");
}

TEST(ConversionTest, ClassesTakeSubclassesAndEmptyObjects) {
  constexpr std::string_view dog = "test.zoo.Dog";
  EXPECT_EQ(converted(dog, Zoo::makeAnimal("Puppy", "p")), "test.zoo.Puppy a test.zoo.Puppy");
  EXPECT_EQ(converted(dog, Zoo::makeAnimal("Cat", "c")), "-");
  EXPECT_EQ(converted(dog, Value::empty(intern(dog))), "test.zoo.Dog an empty test.zoo.Dog");
  EXPECT_EQ(converted(dog, Value()), "-");
  EXPECT_EQ(converted("test.zoo.Dog or none", Value()), " an empty object");
  EXPECT_EQ(converted("test.zoo.Dog or none", Zoo::makeAnimal("Puppy", "p")),
            "test.zoo.Puppy a test.zoo.Puppy");
  EXPECT_EQ(converted("test.zoo.Dog or none", Zoo::makeAnimal("Cat", "c")), "-");
}

TEST(ConversionTest, ARegisteredWordTakesWhatItLikes) {
  factory::TypeRepository& types = ClassSystem::getInstance().types();
  const factory::TypeWord& word = types.word(intern("late scalar"));
  std::optional<Value> made;
  EXPECT_FALSE(word.fits(Value::text("x"), made));  // not yet registered
  types.addConversion(intern("late scalar"), [](const Value& value) {
    return value.text() == "x" ? std::optional(Value::text("late")) : std::nullopt;
  });
  types.addConversion(intern("late scalar"), [](const Value& value) { return value; });
  EXPECT_TRUE(word.fits(Value::text("x"), made));
  EXPECT_EQ(made, Value::text("late"));
  EXPECT_EQ(converted("late scalar", Value::text("y")), "-");
  EXPECT_RAISES(converted("late scalar", Value::scalar(3)), "WrongValue(char,3)");
}

TEST(CallTest, ArgumentsFitTheSignature) {
  const Value dog = Zoo::makeAnimal("Dog", "d"), one = Value::scalar(1.0);
  const auto failure = [&](std::vector<Value> rest) {
    return failureOf([&] { Zoo::call(dog, "move", std::move(rest)); });
  };
  EXPECT_EQ(Zoo::call(dog, "move", {one}), Value::cell({dog, Value::scalar(std::uint16_t{1})}));
  EXPECT_EQ(failure({one, one, dog}), "none");
  EXPECT_EQ(failure({}), "WrongArgumentCount(test.zoo.Animal,move,2 to 4,1)");
  EXPECT_EQ(failure({one, one, dog, one}), "WrongArgumentCount(test.zoo.Animal,move,2 to 4,5)");
  EXPECT_EQ(failure({Value::scalar(2.5)}),
            "WrongArgument(test.zoo.Animal,move,from,uint16 scalar,2.5)");
  EXPECT_EQ(failure({one, one, one}),
            "WrongArgument(test.zoo.Animal,move,opt_with,test.zoo.Animal,1)");
  EXPECT_RAISES(Zoo::classOf("Dog").getMethod(intern("sound")).call({}),
                "WrongArgumentCount(test.zoo.Dog,sound,1,0)");
}

TEST(CallTest, TheReceiverIsCheckedFirst) {
  const Method& move = Zoo::classOf("Animal").getMethod(intern("move"));
  const Property& name = Zoo::classOf("Animal").getProperty(intern("name"));
  const auto failure = [&](const Value& receiver) {
    const std::string failed = failureOf([&] { name.get(receiver); });
    const std::vector<Value> arguments{receiver, Value::text("no number")};
    const std::string called = failureOf([&] { move.call(arguments); });
    return failed + " " + called;
  };
  const Value dog = Zoo::makeAnimal("Dog", "d");
  EXPECT_EQ(failure(Zoo::makeAnimal("Dog", "d", false)), "InvalidHandle InvalidHandle");
  EXPECT_EQ(failure(Value::empty(dog.className())), "InvalidHandle InvalidHandle");
  EXPECT_EQ(failure(ClassSystem::getInstance().makeHeterogeneous({dog, dog})),
            "WrongArgument(test.zoo.Animal,name,1,test.zoo.Animal,a 1-by-2 test.zoo.Dog) "
            "WrongArgument(test.zoo.Animal,move,1,test.zoo.Animal,a 1-by-2 test.zoo.Dog)");
  EXPECT_RAISES(
      Zoo::call(dog, "move",
                {Value::scalar(1.0), Value::scalar(1.0), Zoo::makeAnimal("Cat", "c", false)}),
      "none");  // what an empty argument means is up to the method
}

TEST(CallTest, PropertiesAndConstructors) {
  const COSClassInfo& dog = Zoo::classOf("Dog");
  const Value rex = dog.construct(std::vector{Value::text("Rex")});
  EXPECT_EQ(rex, Zoo::makeAnimal("Dog", "Rex"));
  EXPECT_EQ(dog.getProperty(intern("name")).get(rex), Value::text("Rex"));
  EXPECT_RAISES(dog.getProperty(intern("name")).set(rex, Value::text("x")),
                "ReadOnlyProperty(test.zoo.Animal,name)");
  const Property& age = dog.getProperty(intern("age"));
  EXPECT_RAISES(age.set(rex, Value::scalar(3.0)), "UnknownField(3)");
  EXPECT_RAISES(age.set(rex, Value::scalar(-3.0)),
                "WrongArgument(test.zoo.Animal,age,value,uint16 scalar,-3)");
  EXPECT_RAISES(Zoo::classOf("Animal").construct({}), "AbstractClass(test.zoo.Animal)");
  EXPECT_RAISES(dog.construct({}), "WrongArgumentCount(test.zoo.Dog,Dog,1 to 2,0)");
}

}  // namespace
}  // namespace tyve
