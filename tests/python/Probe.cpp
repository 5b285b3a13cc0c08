#include <atomic>
#include <chrono>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>

#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>
#include <tyve/factory/Marshaler.h>

// A package for the tests of the host: values of all kinds, failures of all kinds, and objects
// whose domains notice when two threads use them at once.

namespace tyve {
namespace {

using Arguments = std::span<const Value>;

std::atomic<int> living = 0, collisions = 0;

struct Domain {
  std::atomic<int> users = 0;
};
Domain domains[2];

class Use {
 public:
  explicit Use(Domain& domain) : domain_(domain) { collisions += domain_.users++ != 0; }
  ~Use() { --domain_.users; }

 private:
  Domain& domain_;
};

class Thing final : public NativeObject {
 public:
  explicit Thing(int domain) : domain_(domains[domain]) { ++living; }
  ~Thing() override {
    const Use use(domain_);
    --living;
  }
  Thing(const Thing&) = delete;
  Thing& operator=(const Thing&) = delete;

  bool isValid() const noexcept override { return Use(domain_), true; }
  bool isEqual(const NativeObject& other) const noexcept override {
    return Use(domain_), this == &other;
  }
  std::size_t hash() const noexcept override { return Use(domain_), static_cast<std::size_t>(-1); }
  const void* domain() const noexcept override { return &domain_; }

  void work(double milliseconds) const {
    const Use use(domain_);
    std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(milliseconds));
  }

 private:
  Domain& domain_;
};

const Thing& thingOf(const Value& value) { return dynamic_cast<const Thing&>(*value.native()); }

Value sample(const std::string& name) {
  const Name mood = intern("test.probe.Mood");
  const Value thing = Value::object(intern("test.probe.Thing"), std::make_shared<Thing>(0));
  if (name == "uint16") return Value::scalar(std::uint16_t{65535});
  if (name == "matrix") return Value::array<double>(std::vector<double>{1, 2, 3, 4}, {2, 2});
  if (name == "char") return Value::text("\xC3\xA4\xFF");  // the last byte is no UTF-8
  if (name == "structs")
    return Value::structure({"f"}, {Value::scalar(1), Value::scalar(2)}, {1, 2});
  if (name == "member") return Value::scalar(-1).withClass(mood);
  if (name == "members")
    return Value::row<std::int32_t>(std::vector<std::int32_t>{3, -1}).withClass(mood);
  if (name == "no member") return Value::scalar(4).withClass(mood);
  if (name == "objects") return Value::objects(intern("test.probe.Thing"), {thing, thing}, {1, 2});
  if (name == "empty") return Value::empty(intern("test.probe.Thing"));
  if (name == "stranger") return Value::object(intern("test.No"), std::make_shared<Thing>(0));
  if (name == "out of memory") throw std::bad_alloc();
  if (name == "failure") throw std::runtime_error("it failed");
  raise("UnknownField", {name});
}

class Probe final : public Package {
 public:
  Probe() : Package(intern("test.probe")) {}

 private:
  void initializePackage() override {
    const Name any = intern("any"), text = intern("char"), int32 = intern("int32 scalar");
    auto mood = std::make_unique<COSClassInfo>(intern("test.probe.Mood"));
    mood->addEnumerationMember(intern("Calm"), 3);
    mood->addEnumerationMember(intern("Wild"), -1);
    addClass(std::move(mood));

    auto info = std::make_unique<COSClassInfo>(intern("test.probe.Thing"), "A thing.");
    const Name thing = info->getName();
    info->addConstructor({"opt_domain", thing, {int32}, 1}, [thing](Arguments given) {
      const int domain = given.empty() ? 0 : given[0].number<std::int32_t>();
      return Value::object(thing, std::make_shared<Thing>(domain));
    });
    info->addProperty(intern("self"), [](const Value& object) {
      thingOf(object).isValid();
      return object;
    });
    Signature work{"thing ms opt_other", text, {thing, any, thing}, 1, true};
    info->addMethod(intern("work"), work, [](Arguments given) {
      thingOf(given[0]).work(given[1].is(Kind::Int32) ? given[1].number<std::int32_t>() : 0);
      return Value::text("done");
    });
    const auto addStatic = [&](std::string_view name, Signature signature, Function function) {
      info->addStaticMethod(intern(name), std::move(signature), std::move(function));
    };
    addStatic("told", {"", text, {any}},
              [](Arguments given) { return Value::text(given[0].describe()); });
    addStatic("echo", {"", any, {any}}, [](Arguments given) { return given[0]; });
    addStatic("order", {"first opt_a opt_b opt_c", any, {any, any, any, int32}, 3},
              [](Arguments given) {
                return Value::cell({given.begin(), given.end()});
              });
    addStatic("sample", {{}, any, {text}}, [](Arguments given) { return sample(given[0].text()); });
    addStatic("quiet", {}, [](Arguments) { return Value::scalar(1); });
    addStatic("living", {"", int32, {}},
              [](Arguments) { return Value::scalar<std::int32_t>(living); });
    addStatic("collisions", {"", int32, {}},
              [](Arguments) { return Value::scalar<std::int32_t>(collisions); });
    addClass(std::move(info));
  }
};

}  // namespace
}  // namespace tyve

extern "C" __attribute__((visibility("default"))) void HBInitialize_test_probe() {
  tyve::ClassSystem::getInstance()
      .addPackage(std::make_unique<tyve::Package>(tyve::intern("test")))
      .addSubPackage(std::make_unique<tyve::Probe>());
}
