#include <tyve/COSClassInfo.h>

#include <algorithm>
#include <utility>

#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>

namespace tyve {

COSClassInfo::COSClassInfo(Name name, std::string documentation)
    : name_(name), documentation_(std::move(documentation)) {}

COSClassInfo::~COSClassInfo() = default;

void COSClassInfo::addSuperclass(Name name) { superclassName_ = name; }

void COSClassInfo::addConstructor(Signature signature, Function function,
                                  std::string documentation) {
  constructor_ = std::make_unique<const Method>(name_, intern(name_.last()), Method::Receiver::None,
                                                std::move(signature), std::move(function),
                                                std::move(documentation));
}

void COSClassInfo::addProperty(Name name, Getter getter, Setter setter, Name type,
                               std::string documentation, Name result) {
  add(properties_,
      std::make_unique<const Property>(name_, name, std::move(getter), std::move(setter), type,
                                       std::move(documentation), result));
}

void COSClassInfo::addMethod(Name name, Signature signature, Function function,
                             std::string documentation) {
  add(methods_,
      std::make_unique<const Method>(name_, name, Method::Receiver::Instance, std::move(signature),
                                     std::move(function), std::move(documentation)));
}

void COSClassInfo::addStaticMethod(Name name, Signature signature, Function function,
                                   std::string documentation) {
  add(methods_,
      std::make_unique<const Method>(name_, name, Method::Receiver::None, std::move(signature),
                                     std::move(function), std::move(documentation)));
}

template <class T>
void COSClassInfo::add(NameTable<const T>& table, std::unique_ptr<const T> member) {
  const Name name = member->getName();
  if (properties_.find(name) || methods_.find(name))
    raise("DuplicateMember", {name_.text(), name.text()});
  table.add(name, std::move(member));
}

void COSClassInfo::addEnumerationMember(Name name, std::int32_t value) {
  if (findEnumerationMember(name.text()) || findEnumerationMember(value))
    raise("DuplicateMember", {name_.text(), name.text()});
  superclassName_ = intern("int32");
  enumerationMembers_.push_back({name, value});
}

const COSClassInfo* COSClassInfo::getSuperclass() const {
  if (!superclassName_ || isEnumeration()) return nullptr;
  const COSClassInfo* known = superclass_.load(std::memory_order_acquire);
  if (!known) {  // threads that come at once find the same
    known = &ClassSystem::getInstance().getClass(superclassName_);
    superclass_.store(known, std::memory_order_release);
  }
  return known;
}

bool COSClassInfo::isSubclassOf(Name name) const {
  for (const COSClassInfo* info = this; info; info = info->getSuperclass())
    if (info->name_ == name || info->superclassName_ == name) return true;
  return false;
}

template <class T>
const T* COSClassInfo::find(NameTable<const T> COSClassInfo::*table, Name name) const {
  for (const COSClassInfo* info = this; info; info = info->getSuperclass())
    if (const T* const member = (info->*table).find(name)) return member;
  return nullptr;
}

template <class T>
const T& COSClassInfo::get(NameTable<const T> COSClassInfo::*table, Name name) const {
  const T* const member = find(table, name);
  if (!member) raise("UnknownMember", {name_.text(), name.text()});
  return *member;
}

const Property* COSClassInfo::findProperty(Name name) const {
  return find(&COSClassInfo::properties_, name);
}
const Method* COSClassInfo::findMethod(Name name) const {
  return find(&COSClassInfo::methods_, name);
}
const Property& COSClassInfo::getProperty(Name name) const {
  return get(&COSClassInfo::properties_, name);
}
const Method& COSClassInfo::getMethod(Name name) const {
  return get(&COSClassInfo::methods_, name);
}

std::string COSClassInfo::print(const Value& object) const {
  return object.isScalar() ? "<" + object.className().text() + ">" : object.describe();
}

Value COSClassInfo::construct(std::span<const Value> arguments) const {
  if (isAbstract()) raise("AbstractClass", {name_.text()});
  return constructor_->call(arguments);
}

Value COSClassInfo::makeEnumeration(const Value& values) const {
  if (values.isEmpty()) return Value::empty(name_);
  for (const std::int32_t value : values.numbers<std::int32_t>()) makeEnumeration(value);
  return values.withClass(name_);
}

Value COSClassInfo::makeEnumeration(std::int32_t value) const {
  if (!findEnumerationMember(value)) raise("UnknownMember", {name_.text(), std::to_string(value)});
  return Value::member(name_, value);
}

const COSClassInfo::EnumerationMember* COSClassInfo::findEnumerationMember(
    std::string_view name) const noexcept {
  const auto isNamed = [&](const EnumerationMember& member) { return member.name.text() == name; };
  const auto found = std::ranges::find_if(enumerationMembers_, isNamed);
  return found == enumerationMembers_.end() ? nullptr : &*found;
}
const COSClassInfo::EnumerationMember* COSClassInfo::findEnumerationMember(
    std::int32_t value) const noexcept {
  const auto found = std::ranges::find(enumerationMembers_, value, &EnumerationMember::value);
  return found == enumerationMembers_.end() ? nullptr : &*found;
}

}  // namespace tyve
