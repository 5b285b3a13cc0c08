#include "tests/tyve/Zoo.h"

namespace tyve {
namespace {

const Name dog = intern("test.zoo.Dog"), animal = intern("test.zoo.Animal"),
           mood = intern("test.zoo.Mood"), uint16 = intern("uint16 scalar"), any = intern("any");

std::unique_ptr<COSClassInfo> makeClass(Name name, Name superclass = {}) {
  auto info = std::make_unique<COSClassInfo>(name, "One of the zoo.");
  info->addSuperclass(superclass);
  return info;
}

}  // namespace

const COSClassInfo& Zoo::classOf(std::string_view name) {
  ClassSystem& system = ClassSystem::getInstance();
  system.addPackage(std::make_unique<Package>(intern("test")))
      .addSubPackage(std::make_unique<Zoo>());
  return system.getClass(intern("test.zoo." + std::string(name)));
}

Value Zoo::makeAnimal(std::string_view className, std::string name, bool isAlive) {
  return ClassSystem::getInstance().announce(std::make_shared<Animal>(std::move(name), isAlive),
                                             classOf(className).getName());
}

Value Zoo::call(const Value& object, std::string_view method, std::vector<Value> rest) {
  rest.insert(rest.begin(), object);
  return ClassSystem::getInstance()
      .getClass(object.className())
      .getMethod(intern(method))
      .call(rest);
}

void Zoo::initializePackage() {
  factory::detail::initStringDataTypes();
  addClass(makeClass(intern("test.zoo.Puppy"), dog));

  auto info = makeClass(dog, animal);
  info->addConstructor(
      {"name opt_age", dog, {intern("char"), uint16}, 1},
      [](std::span<const Value> arguments) { return makeAnimal("Dog", arguments[0].text()); });
  info->addMethod(intern("sound"), {"", intern("char"), {dog}, 0},
                  [](std::span<const Value>) { return Value::text("wuff"); });
  addClass(std::move(info));
  addClass(makeClass(intern("test.zoo.Cat"), animal));
  addClass(makeClass(intern("test.zoo.Stone")));

  info = makeClass(animal);
  info->addProperty(intern("name"),
                    [](const Value& object) { return Value::text(animalOf(object).getName()); });
  info->addProperty(
      intern("age"), [](const Value&) { return Value::scalar(0.0); },
      [](const Value&, const Value& age) { raise("UnknownField", {age.describe()}); }, uint16);
  info->addMethod(intern("sound"), {"", intern("char"), {animal}, 0},
                  [](std::span<const Value>) { return Value::text(""); });
  info->addMethod(intern("move"),
                  {"animal from opt_to opt_with", any, {animal, uint16, uint16, animal}, 2},
                  [](std::span<const Value> arguments) {
                    return Value::cell({arguments.begin(), arguments.end()});
                  });
  info->addStaticMethod(
      intern("count"), {"", uint16, {}, 0},
      [](std::span<const Value>) { return Value::scalar(std::uint16_t{4}); }, "How many kinds.");
  addClass(std::move(info));

  info = makeClass(mood);
  info->addEnumerationMember(intern("Calm"), 3);
  info->addEnumerationMember(intern("Wild"), -1);
  info->addMethod(intern("getValue"), {"", intern("int32 scalar"), {mood}, 0},
                  [](std::span<const Value> arguments) {
                    return Value::scalar(arguments[0].number<std::int32_t>());
                  });
  addClass(std::move(info));
}

}  // namespace tyve
