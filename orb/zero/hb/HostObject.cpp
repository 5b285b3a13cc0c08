#include <orb/zero/hb/HostObject.h>

#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <typeinfo>
#include <unordered_map>

#include <orb/zero/hb/HostError.h>
#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>

namespace orb::zero::hb {
namespace {

/// The native object as one of this type; null when it is of another.
template <class Object>
const Object* as(const tyve::NativeObject& native) noexcept {
  return typeid(native) == typeid(Object) ? static_cast<const Object*>(&native) : nullptr;
}

/// The host class of each class of elements. Only one that is known to the host is kept, since
/// others may still be registered; so its objects need no announcement each.
class HostClasses {
 public:
  static HostClasses& getInstance() {
    static HostClasses& instance = *new HostClasses;  // as long as the class system
    return instance;
  }

  /// No name for a class that the host does not know.
  tyve::Name find(const meta::ClassInfo& type) {
    thread_local const meta::ClassInfo* lastType = nullptr;
    thread_local tyve::Name lastName;
    if (lastType != &type) {
      const tyve::Name name = lookUp(type);
      if (!name) return {};
      lastType = &type;
      lastName = name;
    }
    return lastName;
  }

 private:
  tyve::Name lookUp(const meta::ClassInfo& type) {
    {
      const std::shared_lock lock(mutex_);
      const auto found = names_.find(&type);
      if (found != names_.end()) return found->second;
    }
    const tyve::Name name = hostName(type);
    if (!tyve::ClassSystem::getInstance().findClass(name)) return {};
    const std::lock_guard lock(mutex_);
    names_.emplace(&type, name);
    return name;
  }

  std::shared_mutex mutex_;
  std::unordered_map<const meta::ClassInfo*, tyve::Name> names_;
};

[[noreturn]] void raiseNoElement(const meta::ClassInfo& expected) {
  raise("CannotCastIncompatibleTypes", {std::string(expected.name)});
}

}  // namespace

void raiseToHost(const Exception& error) {
  throw tyve::Exception(error.getCatalog(), error.getIdentifier(), error.getArguments(),
                        error.getText());
}

bool ElementObject::isValid() const noexcept { return static_cast<bool>(element_); }
bool ElementObject::isEqual(const NativeObject& other) const noexcept {
  const auto* const object = as<ElementObject>(other);
  return object && object->element_ == element_;
}
std::size_t ElementObject::hash() const noexcept { return ElementHash()(element_); }
const void* ElementObject::domain() const noexcept { return domainOf(element_); }

bool ModelObject::isValid() const noexcept { return true; }
bool ModelObject::isEqual(const NativeObject& other) const noexcept {
  const auto* const object = as<ModelObject>(other);
  return object && object->model_ == model_;
}
std::size_t ModelObject::hash() const noexcept {
  return std::hash<const void*>()(model_.operator->());
}
const void* ModelObject::domain() const noexcept { return model_.operator->(); }

const void* domainOf(const ModelElement& element) noexcept {
  return element.get() ? &element.get()->model() : nullptr;
}

tyve::Name hostName(const meta::ClassInfo& type) { return tyve::intern(type.name); }

tyve::Value toHost(ModelElement element, tyve::Name declared) {
  const meta::ClassInfo* type = element.get() ? &element.get()->getMetaClass() : nullptr;
  auto native = std::make_shared<const ElementObject>(std::move(element));
  for (; type; type = type->superclass)
    if (const tyve::Name name = HostClasses::getInstance().find(*type))
      return tyve::Value::object(name, std::move(native));
  return tyve::ClassSystem::getInstance().announce(std::move(native), declared);
}

tyve::Value toHost(Model model) {
  static const tyve::Name name = tyve::intern(ModelObject::hostClass);
  return tyve::ClassSystem::getInstance().announce(
      std::make_shared<const ModelObject>(std::move(model)), name);
}

ModelElement elementOf(const tyve::Value& value, const meta::ClassInfo& expected) {
  const ModelElement& element = anyElementOf(value, expected);
  if (!element.get() || element.get()->getMetaClass().isKindOf(expected)) return element;
  raiseNoElement(expected);
}

const ModelElement& anyElementOf(const tyve::Value& value, const meta::ClassInfo& expected) {
  static const ModelElement none;
  if (value.is(tyve::Kind::Object)) {
    if (value.isEmpty()) return none;
    if (const auto* object = value.isScalar() ? as<ElementObject>(*value.native()) : nullptr)
      return object->element();
  }
  raiseNoElement(expected);
}

Model modelOf(const tyve::Value& value) {
  if (value.is(tyve::Kind::Object) && !value.isEmpty())
    if (const auto* const object = as<ModelObject>(*value.at(0).native())) return object->model();
  raise("CannotCreateWithoutModel");
}

}  // namespace orb::zero::hb
