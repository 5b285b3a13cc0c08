#include <orb/zero/meta/MetaRegistry.h>

#include <algorithm>

#include <orb/zero/ElementRange.h>
#include <orb/zero/Exception.h>
#include <orb/zero/Targets.h>
#include <orb/zero/meta/AbstractMetaPackage.h>
#include <orb/zero/meta/impl/StandardPackage.h>

namespace orb::zero::meta {
namespace {

void collect(const Package& package, std::vector<Package>& found) {
  found.push_back(package);
  for (const Package& inner : package->getPackages()) collect(inner, found);
}

bool hasUri(const Package& package, std::u16string_view uri) {
  if (package->getUri() == uri) return true;
  for (const Package& inner : package->getPackages())
    if (hasUri(inner, uri)) return true;
  return false;
}

bool isInside(ModelElement element, const Package& package) {
  while (element && !(element == package)) element = element->getContainer();
  return static_cast<bool>(element);
}

}  // namespace

MetaRegistry& MetaRegistry::getInstance() {
  static MetaRegistry& registry = *new MetaRegistry;  // what outlives the program may still ask
  return registry;
}

MetaRegistry::MetaRegistry() {
  StandardPackage::getInstance().registerIn(*this);
  Model::Freezer::freeze(model_);
}

Type MetaRegistry::findType(std::string_view name) const {
  const Lock lock(mutex_);
  const auto found = tables_.types.find(name);
  return found != tables_.types.end() && found->second ? found->second : Type();
}

Type MetaRegistry::requireType(std::string_view name) const {
  Type found = findType(name);
  if (!found) raise("NoSuchType", {std::string(name)});
  return found;
}

const ClassInfo* MetaRegistry::findRecord(std::string_view className) const {
  const Lock lock(mutex_);
  const auto found = tables_.types.find(className);
  if (found == tables_.types.end() || !found->second) return nullptr;
  const Type::Impl& type = *found->second.operator->();  // without a handle
  const bool isClass = type.getMetaClass() == Class::metaClass();
  return isClass ? static_cast<const Class::Impl&>(type).getInfo() : nullptr;
}

PrimitiveType MetaRegistry::getPrimitiveType(std::string_view name) const {
  const Lock lock(mutex_);
  const Type found = findType(name);
  const bool isPrimitive = found && found->getMetaClass() == PrimitiveType::metaClass();
  return isPrimitive ? PrimitiveType(found) : PrimitiveType();
}

Package MetaRegistry::findPackage(std::u16string_view uri) const {
  const Lock lock(mutex_);
  for (const Package& package : getPackages())
    if (package->getUri() == uri) return package;
  return {};
}

bool MetaRegistry::hasPackage(std::string_view uri) const {
  const Lock lock(mutex_);
  const std::u16string wanted = toUtf16(uri);
  return std::any_of(tables_.roots.begin(), tables_.roots.end(),
                     [&](const Package& root) { return root && hasUri(root, wanted); });
}

std::vector<Package> MetaRegistry::getPackages() const {
  const Lock lock(mutex_);
  std::vector<Package> found;
  for (const Package& root : tables_.roots)
    if (root) collect(root, found);
  return found;
}

std::vector<Type> MetaRegistry::getTypes() const {
  const Lock lock(mutex_);
  std::vector<Type> found;
  for (const Package& package : getPackages())
    for (const Type& type : package->getTypes()) found.push_back(type);
  return found;
}

std::vector<Class> MetaRegistry::getClasses() const {
  const Lock lock(mutex_);
  std::vector<Class> found;
  for (const Type& type : getTypes())
    if (type->getMetaClass() == Class::metaClass()) found.emplace_back(type);
  return found;
}

ModelElement MetaRegistry::createElement(const Model& model, std::string_view className) const {
  BuilderFactory makeBuilder = nullptr;
  {
    const Lock lock(mutex_);
    const Type type = requireType(className);
    if (!(type->getMetaClass() == Class::metaClass()))
      raise("NoSuchType", {std::string(className)});
    makeBuilder = type->getBuilderFactory();
  }
  if (!makeBuilder) raise("InvalidValue");
  return makeBuilder(model)->create();
}

void MetaRegistry::registerRootPackage(const Package& package) {
  const Lock lock(mutex_);
  tables_.roots.push_back(package);
}

void MetaRegistry::unregisterRootPackage(std::u16string_view uri) {
  const Lock lock(mutex_);
  std::erase_if(tables_.roots, [&](const Package& root) {
    if (!root || root->getUri() != uri) return !root;
    std::erase_if(tables_.types, [&](const auto& entry) {
      if (!isInside(entry.second, root)) return false;
      serializers_.forget(entry.first);
      return true;
    });
    return true;
  });
}

void MetaRegistry::registerType(const Type& type, CollectionAccessor collectionAccessor,
                                BuilderFactory builderFactory) {
  const Lock lock(mutex_);
  type->collectionAccessor_ = collectionAccessor;
  type->builderFactory_ = builderFactory;
}

void MetaRegistry::registerTypeNames(const Type& type, std::string_view qualified,
                                     std::string_view native) {
  const Lock lock(mutex_);
  type->qualifiedName_ = qualified;
  type->nativeName_ = native;
  for (const std::string_view name : {qualified, native})
    tables_.types.insert_or_assign(std::string(name), type);
}

bool MetaRegistry::isMaking(const AbstractMetaPackage& package) const {
  const Lock lock(mutex_);
  for (const Update* update = update_; update; update = update->outer_)
    if (std::find(update->made_.begin(), update->made_.end(), &package) != update->made_.end())
      return true;
  return false;
}

MetaRegistry::Update::Update(MetaRegistry& registry, AbstractMetaPackage& package)
    : lock_(registry.mutex_),
      registry_(registry),
      thaw_(registry.model_),
      transaction_(registry.model_),
      before_(registry.tables_),
      serializersBefore_(registry.serializers_.types_),
      outer_(registry.update_),
      made_{&package} {
  registry.update_ = this;
}

MetaRegistry::Update::~Update() {
  registry_.update_ = outer_;
  if (isCommitted_) return;
  std::swap(registry_.tables_, before_);
  std::swap(registry_.serializers_.types_, serializersBefore_);
}

void MetaRegistry::Update::remove(const Package& package) {
  const Model& model = registry_.model_;
  Targets named;
  for (const ModelElement& element : model.elements()) {
    if (isInside(element, package)) continue;
    for (const PropertyInfo* property : element->getMetaClass().referring) {
      named.collect(*element.get(), *property);
      for (Element* target : named.found) {
        if (!isInside(ModelElement(target), package)) continue;
        proxies_.push_back(model.createProxy(target->getMetaClass(), target->getUuid()));
        property->services.replace(*element.get(), *target, *proxies_.back().get());
      }
    }
  }
  package->destroy();
}

void MetaRegistry::Update::commit() {
  for (const ModelElement& proxy : proxies_)
    if (proxy && !proxy->resolve()) proxy->destroy();
  transaction_.commit();
  isCommitted_ = true;
  if (outer_) return outer_->made_.splice(outer_->made_.end(), made_);
  for (AbstractMetaPackage* package : made_)
    package->isInitialized_.store(true, std::memory_order_release);
}

}  // namespace orb::zero::meta
