#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>
#include <tyve/factory/Marshaler.h>

#include "tests/support/Failure.h"

namespace tyve {

template <class Call>
std::string failureOf(Call call) {
  return torvan::tests::failureOf<Exception>(call, "NUMBAT:class");
}

/// An animal, alive or not, equal to another one of its name.
class Animal : public NativeObject {
 public:
  explicit Animal(std::string name, bool isAlive = true)
      : name_(std::move(name)), isAlive_(isAlive) {}

  const std::string& getName() const { return name_; }
  bool isValid() const noexcept override { return isAlive_; }
  bool isEqual(const NativeObject& other) const noexcept override {
    const auto* const animal = dynamic_cast<const Animal*>(&other);
    return animal && animal->name_ == name_;
  }
  std::size_t hash() const noexcept override { return std::hash<std::string>()(name_); }

 private:
  std::string name_;
  bool isAlive_;
};

inline const Animal& animalOf(const Value& object) {
  return dynamic_cast<const Animal&>(*object.native());
}

/// "test.zoo": Puppy, a Dog, an Animal, which is abstract; Cat, an Animal; the enumeration Mood.
/// Subclasses come first. Stone has nothing to do with them.
class Zoo : public Package {
 public:
  Zoo() : Package(intern("test.zoo")) {}

  /// The class of this name, of a zoo that is registered by the first one who asks.
  static const COSClassInfo& classOf(std::string_view name);
  static Value makeAnimal(std::string_view className, std::string name, bool isAlive = true);
  static Value call(const Value& object, std::string_view method, std::vector<Value> rest = {});

 protected:
  void initializePackage() override;
};

}  // namespace tyve
