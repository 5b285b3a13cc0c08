#include <orb/zero/hb/CollectionObject.h>

#include <typeinfo>

#include <orb/zero/Exception.h>
#include <orb/zero/Hash.h>
#include <orb/zero/hb/HostError.h>
#include <orb/zero/hb/HostObject.h>
#include <tyve/Exception.h>

namespace orb::zero::hb {
namespace {

const CollectionObject& collectionOf(const tyve::Value& object) {
  const tyve::NativeObject& native = *object.native();
  if (typeid(native) != typeid(CollectionObject))
    raise("CannotCastIncompatibleTypes", {object.className().text()});
  return static_cast<const CollectionObject&>(native);
}

}  // namespace

bool CollectionObject::isValid() const noexcept { return static_cast<bool>(owner_); }
bool CollectionObject::isEqual(const NativeObject& other) const noexcept {
  if (typeid(other) != typeid(CollectionObject)) return false;
  const auto& object = static_cast<const CollectionObject&>(other);
  return object.owner_ == owner_ && object.view_.property == view_.property;
}
std::size_t CollectionObject::hash() const noexcept {
  return hashCombine(ElementHash()(owner_), static_cast<std::uint64_t>(view_.property.position));
}
const void* CollectionObject::domain() const noexcept { return domainOf(owner_); }

std::size_t CollectionObject::size() const { return services().size(owner()); }

tyve::Value CollectionObject::at(std::int32_t place) const {
  if (place < 0 || static_cast<std::size_t>(place) >= size())
    tyve::raise("IndexOutOfRange", {std::to_string(place), std::to_string(size())});
  return view_.items.toHost(
      services().at(owner(), static_cast<std::size_t>(place), ProxyTag::Resolve));
}

tyve::Value CollectionObject::find(const tyve::Value& key) const {
  return view_.items.toHost(services().find(owner(), view_.keys->fromHost(key)));
}

tyve::Value CollectionObject::keys() const { return view_.keys->toHost(services().keys(owner())); }

tyve::Value CollectionObject::values() const {
  return view_.items.toHost(services().get(owner(), ProxyTag::Resolve));
}

CollectionClass::CollectionClass(std::string_view name, std::string_view superclass,
                                 unsigned members, std::string documentation)
    : tyve::COSClassInfo(tyve::intern(name), std::move(documentation)) {
  addSuperclass(tyve::intern(superclass));
  using Arguments = std::span<const tyve::Value>;
  if (members & Listing) {
    addProperty(
        tyve::intern("size"),
        [](const tyve::Value& object) {
          return asHost([&] {
            return tyve::Value::scalar(static_cast<std::int32_t>(collectionOf(object).size()));
          });
        },
        {}, {}, "How many values there are.", tyve::intern("int32 scalar"));
    addReader(
        "values", "any", {}, [](Arguments given) { return collectionOf(given[0]).values(); },
        "All values, as they are now.");
  }
  if (members & Places)
    addReader(
        "at", "any", "int32 scalar",
        [](Arguments given) { return collectionOf(given[0]).at(given[1].number<std::int32_t>()); },
        "The value at a place; the first is at 0.");
  if (members & Keys) {
    addReader(
        "at", "any", "any", [](Arguments given) { return collectionOf(given[0]).find(given[1]); },
        "The element under a key; an empty one when there is none.");
    addReader(
        "keys", "any", {}, [](Arguments given) { return collectionOf(given[0]).keys(); },
        "All keys, in their order.");
  }
}

std::string CollectionClass::print(const tyve::Value& object) const {
  if (!object.isScalar() || !object.native()->isValid()) return COSClassInfo::print(object);
  return "<" + object.className().text() + " of " + std::to_string(collectionOf(object).size()) +
         ">";
}

template <class Call>
void CollectionClass::addReader(std::string_view name, std::string_view result,
                                std::string_view argument, Call call, std::string documentation) {
  tyve::Signature signature{{}, tyve::intern(result), {getName()}};
  if (!argument.empty()) signature.arguments.push_back(tyve::intern(argument));
  signature.isArray = argument.empty();  // or it is told which one
  addMethod(
      tyve::intern(name), std::move(signature),
      [call](std::span<const tyve::Value> given) { return asHost([&] { return call(given); }); },
      std::move(documentation));
}

std::string_view CollectionClass::nameFor(const meta::PropertyInfo& property) {
  if (property.services.at) return "orb.zero.Sequence";
  return property.services.find ? "orb.zero.Map" : "orb.zero.Set";
}

}  // namespace orb::zero::hb
