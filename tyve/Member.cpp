#include <tyve/Member.h>

#include <optional>
#include <sstream>
#include <utility>

#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>

namespace tyve {
namespace {

const factory::TypeWord& wordOf(Name name) { return ClassSystem::getInstance().types().word(name); }

}  // namespace

Member::Member(Name className, Name name, std::string documentation)
    : class_(className),
      classWord_(wordOf(className)),
      name_(name),
      documentation_(std::move(documentation)) {}

void Member::checkReceiver(const Value& object, bool mayBeGone) const {
  if (!classWord_.isClassOf(object)) raiseWrong("1", class_, object);
  if (!object.is(Kind::Object)) return;  // a member of an enumeration is always there
  if (object.isEmpty() && !mayBeGone) raise("InvalidHandle");
  if (!object.isEmpty() && !object.isScalar()) raiseWrong("1", class_, object);
  if (!mayBeGone && !object.native()->isValid()) raise("InvalidHandle");
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
      function_(std::move(function)) {
  for (const Name word : signature_.arguments) words_.push_back(&wordOf(word));
}

Value Method::call(std::span<const Value> arguments) const {
  if (!isStatic() && !arguments.empty()) checkReceiver(arguments.front(), signature_.takesGone);
  const std::size_t most = signature_.arguments.size(), least = most - signature_.optional;
  if (arguments.size() < least || arguments.size() > most) {
    std::string expected = std::to_string(least);
    if (least != most) expected += " to " + std::to_string(most);
    raise("WrongArgumentCount", {getClass().text(), getName().text(), std::move(expected),
                                 std::to_string(arguments.size())});
  }
  std::vector<Value> fitting;  // once one of them is not in its form
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    std::optional<Value> made;
    if (!words_[i]->fits(arguments[i], made))
      raiseWrong(argumentName(i), signature_.arguments[i], arguments[i]);
    if (!made) continue;
    if (fitting.empty()) fitting.assign(arguments.begin(), arguments.end());
    fitting[i] = *std::move(made);
  }
  return function_(fitting.empty() ? arguments : fitting);
}

std::string Method::argumentName(std::size_t position) const {
  std::istringstream names(signature_.argumentNames);
  std::string name;
  for (std::size_t i = 0; i <= position; ++i)
    if (!(names >> name)) return std::to_string(position + 1);
  return name;
}

Property::Property(Name className, Name name, Getter getter, Setter setter, Name type,
                   std::string documentation, Name result)
    : Member(className, name, std::move(documentation)),
      getter_(std::move(getter)),
      setter_(std::move(setter)),
      type_(type),
      word_(type ? &wordOf(type) : nullptr),
      result_(result) {}

Value Property::get(const Value& object) const {
  checkReceiver(object);
  return getter_(object);
}

void Property::set(const Value& object, const Value& value) const {
  checkReceiver(object);
  if (isReadOnly()) raise("ReadOnlyProperty", {getClass().text(), getName().text()});
  std::optional<Value> made;
  if (word_ && !word_->fits(value, made)) raiseWrong("value", type_, value);
  setter_(object, made ? *made : value);
}

}  // namespace tyve
