#include <tyve/Member.h>

#include <optional>
#include <sstream>
#include <utility>

#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>

namespace tyve {
namespace {

std::optional<Value> converted(const Value& value, Name word) {
  return ClassSystem::getInstance().types().convert(value, word);
}

}  // namespace

Member::Member(Name className, Name name, std::string documentation)
    : class_(className), name_(name), documentation_(std::move(documentation)) {}

void Member::checkReceiver(const Value& object) const {
  if (!converted(object, class_)) raiseWrong("1", class_, object);
  if (!object.is(Kind::Object)) return;  // a member of an enumeration is always there
  if (object.isEmpty()) raiseInvalidHandle();
  if (!object.isScalar()) raiseWrong("1", class_, object);
  if (!object.native()->isValid()) raiseInvalidHandle();
}

void Member::raiseWrong(std::string argument, Name expected, const Value& value) const {
  raise("WrongArgument",
        {class_.text(), name_.text(), std::move(argument), expected.text(), value.describe()});
}

Method::Method(Name className, Name name, Receiver receiver, Signature signature, Function function,
               std::string documentation)
    : Member(className, name, std::move(documentation)),
      receiver_(receiver),
      signature_(std::move(signature)),
      function_(std::move(function)) {}

Value Method::call(std::span<const Value> arguments) const {
  if (!isStatic() && !arguments.empty()) checkReceiver(arguments.front());
  const std::size_t most = signature_.arguments.size(), least = most - signature_.optional;
  if (arguments.size() < least || arguments.size() > most) {
    std::string expected = std::to_string(least);
    if (least != most) expected += " to " + std::to_string(most);
    raise("WrongArgumentCount", {getClass().text(), getName().text(), std::move(expected),
                                 std::to_string(arguments.size())});
  }
  std::vector<Value> fitting;
  fitting.reserve(arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Name word = signature_.arguments[i];
    std::optional<Value> fit = converted(arguments[i], word);
    if (!fit) raiseWrong(argumentName(i), word, arguments[i]);
    fitting.push_back(*std::move(fit));
  }
  return function_(fitting);
}

std::string Method::argumentName(std::size_t position) const {
  std::istringstream names(signature_.argumentNames);
  std::string name;
  for (std::size_t i = 0; i <= position; ++i)
    if (!(names >> name)) return std::to_string(position + 1);
  return name;
}

Property::Property(Name className, Name name, Getter getter, Setter setter, Name type,
                   std::string documentation)
    : Member(className, name, std::move(documentation)),
      getter_(std::move(getter)),
      setter_(std::move(setter)),
      type_(type) {}

Value Property::get(const Value& object) const {
  checkReceiver(object);
  return getter_(object);
}

void Property::set(const Value& object, const Value& value) const {
  checkReceiver(object);
  if (isReadOnly()) raise("ReadOnlyProperty", {getClass().text(), getName().text()});
  const std::optional<Value> fit = type_ ? converted(value, type_) : value;
  if (!fit) raiseWrong("value", type_, value);
  setter_(object, *fit);
}

}  // namespace tyve
