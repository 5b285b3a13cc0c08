#include <atomic>
#include <stdexcept>
#include <thread>

#include "tests/tyve/Zoo.h"

namespace tyve {
namespace {

ClassSystem& hostSystem() { return ClassSystem::getInstance(); }

/// A package that fails at first, and counts.
class Late : public Package {
 public:
  Late(Name name, int failures) : Package(name), failures_(failures) {}
  std::atomic<int> calls = 0;

 protected:
  void initializePackage() override {
    ++calls;
    const Name name = intern(getName().text() + ".One");
    addClass(std::make_unique<COSClassInfo>(name));
    if (failures_-- > 0) throw std::runtime_error("not yet");
    EXPECT_TRUE(hostSystem().findClass(name));  // it may look for what it has registered
    addClass(std::make_unique<COSClassInfo>(name));
    addClass(std::make_unique<COSClassInfo>(intern(getName().text() + ".Two")));
  }

 private:
  int failures_;
};

TEST(NameTest, EqualTextsAreOneName) {
  EXPECT_EQ(intern("a.b.C"), intern(std::string("a.b.") + "C"));
  EXPECT_EQ(intern("a.b.C").parent().parent(), intern("a"));
  EXPECT_EQ(intern("a.b.C").last(), "C");
  EXPECT_TRUE(intern("a").last() == "a" && !intern("a").parent());
  EXPECT_TRUE(!intern("") && Name().text().empty());
}

TEST(ClassTest, ClassesAreRegisteredWhenAskedForAndOnce) {
  const Name name = intern("late"), one = intern("late.One");
  auto& late = static_cast<Late&>(hostSystem().addPackage(std::make_unique<Late>(name, 1)));
  EXPECT_EQ(&hostSystem().addPackage(std::make_unique<Late>(name, 0)), &late);
  EXPECT_EQ(hostSystem().findPackage(name), &late);
  EXPECT_EQ(late.calls, 0);
  EXPECT_THROW(hostSystem().findClass(one), std::runtime_error);
  const COSClassInfo* const found = hostSystem().findClass(one);
  ASSERT_TRUE(found);
  EXPECT_EQ(late.getClasses().front(), found);
  EXPECT_EQ(late.getClasses().size(), 2U);
  EXPECT_EQ(late.calls, 2);
}

TEST(ClassTest, ThreadsThatComeAtOnceRegisterOnePackage) {
  std::atomic<const COSClassInfo*> classes[4] = {};
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < 4; ++i)
      threads.emplace_back([&, i] {
        Package& top = hostSystem().addPackage(std::make_unique<Package>(intern("many")));
        top.addSubPackage(std::make_unique<Late>(intern("many.inner"), 0));
        classes[i] = hostSystem().findClass(intern("many.inner.Two"));
      });
  }
  for (const auto& found : classes) EXPECT_EQ(found, classes[0]);
  EXPECT_EQ(static_cast<Late*>(hostSystem().findPackage(intern("many.inner")))->calls, 1);
}

TEST(ClassTest, NamesBelongToTheirPackage) {
  Package& top = hostSystem().addPackage(std::make_unique<Package>(intern("top")));
  EXPECT_RAISES(top.addSubPackage(std::make_unique<Package>(intern("other.in"))),
                "NotInPackage(top,other.in)");
  EXPECT_RAISES(hostSystem().addPackage(std::make_unique<Package>(intern("a.b"))),
                "NotInPackage(a.b)");
  EXPECT_FALSE(hostSystem().findPackage(intern("top.missing.deep")));
  EXPECT_RAISES(hostSystem().getClass(intern("top.Missing")), "UnknownClass(top.Missing)");
}

TEST(ClassTest, MembersAreListedInOrderAndFoundAlongTheChain) {
  const COSClassInfo &puppy = Zoo::classOf("Puppy"), &animal = Zoo::classOf("Animal");
  const Name sound = intern("sound");
  EXPECT_EQ(puppy.getSuperclass()->getSuperclass(), &animal);
  std::string members;
  for (const auto& property : animal.getProperties()) members += property->getName().text() + " ";
  for (const auto& method : animal.getMethods()) members += method->getName().text() + " ";
  EXPECT_EQ(members, "name age sound move count ");
  EXPECT_EQ(puppy.getMethod(sound).getClass(), intern("test.zoo.Dog"));
  EXPECT_EQ(Zoo::classOf("Cat").getMethod(sound).getClass(), animal.getName());
  EXPECT_TRUE(puppy.getMethod(intern("count")).isStatic());
  EXPECT_EQ(puppy.getMethod(intern("count")).getDocumentation(), "How many kinds.");
  EXPECT_RAISES(puppy.getProperty(sound), "UnknownMember(test.zoo.Puppy,sound)");

  COSClassInfo twice(intern("test.Twice"));
  twice.addProperty(sound, [](const Value& object) { return object; });
  EXPECT_RAISES(twice.addMethod(sound, {}, {}), "DuplicateMember(test.Twice,sound)");
  twice.addSuperclass(intern("test.Missing"));
  EXPECT_RAISES(twice.findMethod(intern("x")), "UnknownClass(test.Missing)");
}

TEST(ClassTest, EnumerationsAreMadeOfTheirValues) {
  const COSClassInfo& mood = Zoo::classOf("Mood");
  const auto make = [&](std::vector<std::int32_t> values) {
    return mood.makeEnumeration(Value::row<std::int32_t>(values));
  };
  const Value both = make({-1, 3});
  EXPECT_EQ(both.numbers<std::int32_t>()[1], 3);
  EXPECT_EQ(both.at(1), make({3}));
  EXPECT_EQ(make({}), Value::empty(mood.getName()));
  EXPECT_RAISES(make({3, 1}), "UnknownMember(test.zoo.Mood,1)");
  EXPECT_TRUE(mood.isSubclassOf(intern("int32")) && !mood.getSuperclass());
  EXPECT_EQ(Zoo::call(make({-1}), "getValue"), Value::scalar(-1));
}

TEST(ClassTest, HeterogeneousArraysHaveTheClassInCommon) {
  const auto classOf = [](std::vector<Value> objects) {
    return hostSystem().makeHeterogeneous(std::move(objects)).className().text();
  };
  const Value puppy = Zoo::makeAnimal("Puppy", "p"), dog = Zoo::makeAnimal("Dog", "d"),
              cat = Zoo::makeAnimal("Cat", "c");
  EXPECT_EQ(classOf({puppy, puppy}), "test.zoo.Puppy");
  EXPECT_EQ(classOf({puppy, dog, puppy}), "test.zoo.Dog");
  EXPECT_EQ(classOf({puppy, dog, cat}), "test.zoo.Animal");
  EXPECT_EQ(classOf({puppy, Zoo::makeAnimal("Stone", "s"), cat}), "numbat.mixin.Heterogeneous");
  EXPECT_EQ(classOf({}), "");
  const Value all = hostSystem().makeHeterogeneous({cat, puppy});
  EXPECT_EQ(all.at(1), puppy);
  EXPECT_RAISES(hostSystem().makeHeterogeneous({all.at(0), Value::scalar(1.5)}),
                "WrongValue(object,1.5)");
  EXPECT_RAISES(hostSystem().announce(cat.native(), intern("test.zoo.Cow")),
                "UnknownClass(test.zoo.Cow)");
}

}  // namespace
}  // namespace tyve
