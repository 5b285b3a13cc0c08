#include <orb/zero/meta/AbstractMetaPackage.h>

#include <algorithm>
#include <utility>

#include <orb/zero/Exception.h>
#include <orb/zero/meta/Argument.h>
#include <orb/zero/meta/EnumLiteral.h>
#include <orb/zero/meta/Operation.h>
#include <orb/zero/meta/Property.h>

namespace orb::zero::meta {
namespace {

std::u16string simpleName(std::string_view dotted) {
  return toUtf16(dotted.substr(dotted.rfind('.') + 1));
}

std::string joined(std::string_view dotted, std::string_view name) {
  return std::string(dotted) + '.' + std::string(name);
}

std::string nativeName(std::string_view dotted) {
  std::string native;
  for (const char c : dotted) c == '.' ? native += "::" : native += c;
  return native;
}

}  // namespace

AbstractMetaPackage::AbstractMetaPackage(std::u16string uri) : uri_(std::move(uri)) {}
AbstractMetaPackage::~AbstractMetaPackage() = default;

void AbstractMetaPackage::ensureInitialized() {
  if (isInitialized_.load(std::memory_order_acquire)) return;
  MetaRegistry& registry = MetaRegistry::getInstance();
  const std::lock_guard lock(registry.getMutex());
  if (!isInitialized_ && !registry.isMaking(*this)) registerIn(registry);
}

void AbstractMetaPackage::registerIn(MetaRegistry& registry) {
  MetaRegistry::Update update(registry, *this);
  registry_ = &registry;
  types_.clear();
  registry.unregisterRootPackage(uri_);
  if (const Package before = packageAt(uri_)) update.remove(before);
  registry.registerRootPackage(createPackage({}, uri_));
  instantiate(registry);
  weave(registry, registry.getSerializers());
  update.commit();
}

template <class X>
X AbstractMetaPackage::create(std::u16string name, const uuid& id) const {
  X element = X::create(registry_->getModel(), id);
  element->setName(std::move(name));
  return element;
}

Package AbstractMetaPackage::createPackage(std::u16string name, std::u16string uri) {
  Package package = create<Package>(std::move(name), uuidOfName(toUtf8(uri)));
  package->setUri(std::move(uri));
  return package;
}

Package AbstractMetaPackage::packageAt(std::u16string_view uri) const {
  return created<Package>(uuidOfName(toUtf8(uri)));
}

Type AbstractMetaPackage::typeNamed(std::string_view name) const {
  const auto found = types_.find(name);
  return found != types_.end() ? found->second : registry_->requireType(name);
}

Collection* AbstractMetaPackage::collectionOf(ModelElement::Impl& element,
                                              const PropertyInfo& property) {
  const bool isOne = property.services.collection && element.getMetaClass().has(property);
  return isOne ? property.services.collection(element) : nullptr;
}

Class AbstractMetaPackage::createClass(std::u16string name, std::string_view dotted,
                                       bool isAbstract, const uuid& id) {
  Class type = create<Class>(std::move(name), id);
  types_.emplace(dotted, type);
  type->setIsAbstract(isAbstract);
  return type;
}

Property AbstractMetaPackage::createProperty(std::u16string name, ValueKind kind, bool isOwning,
                                             const uuid& id) {
  Property property = create<Property>(std::move(name), id);
  property->setKind(kind);
  property->setIsOwning(isOwning);
  return property;
}

void AbstractMetaPackage::setPropertyIndex(const Property& property, int position) {
  property->setPosition(static_cast<std::uint16_t>(position));
}

Operation AbstractMetaPackage::createOperation(std::u16string name, const uuid& id) {
  return create<Operation>(std::move(name), id);
}

void AbstractMetaPackage::setInvoker(const Operation& operation, Invoker invoker) {
  operation->invoker_ = invoker;
}

Argument AbstractMetaPackage::createArgument(std::u16string name, const uuid& id) {
  return create<Argument>(std::move(name), id);
}

PrimitiveType AbstractMetaPackage::createPrimitiveType(std::string_view name) {
  PrimitiveType type = create<PrimitiveType>(toUtf16(name), uuidOfName(name));
  types_.emplace(name, type);
  return type;
}

Enum AbstractMetaPackage::createEnum(std::u16string name, std::string_view dotted, const uuid& id) {
  Enum type = create<Enum>(std::move(name), id);
  types_.emplace(dotted, type);
  return type;
}

EnumLiteral AbstractMetaPackage::createEnumLiteral(std::u16string name, int value, const uuid& id) {
  EnumLiteral literal = create<EnumLiteral>(std::move(name), id);
  literal->setValue(value);
  return literal;
}

void AbstractMetaPackage::instantiateClasses(std::span<const ClassInfo* const> classes) {
  for (const ClassInfo* info : classes) instantiateClass(*info);
}

void AbstractMetaPackage::instantiateClass(const ClassInfo& info) {
  createClass(simpleName(info.name), info.name, info.isAbstract(), info.id)->info_ = &info;
  for (const PropertyInfo& own : info.own) {
    const Property property = createProperty(toUtf16(own.name), own.kind, own.isOwning, own.id);
    property->info_ = &own;
    property->setIsOrdered(own.flags & Ordered);
    property->setIsUnique(own.flags & Unique);
    property->setIsReadOnly(own.flags & ReadOnly);
    property->setIsTransient(own.flags & Transient);
    property->setIsPublicMutator(!(own.flags & NoMutator));
    if (own.flags & NoDefault) property->setDefaultValue(boost::none);
    setPropertyIndex(property, own.position);
  }
  for (const OperationInfo& own : info.operations) {
    const std::string name = joined(info.name, own.name);
    const Operation operation = createOperation(toUtf16(own.name), uuidOfName(name));
    operation->setIsAbstract(own.isAbstract);
    operation->setIsStatic(false);
    operation->setIsPublic(true);
    operation->setIsEvent(false);
    for (const ParameterInfo& argument : own.arguments)
      createArgument(toUtf16(argument.name), uuidOfName(joined(name, argument.name)))
          ->setIsInput(true);
  }
}

void AbstractMetaPackage::weaveClasses(const Package& package,
                                       std::span<const ClassInfo* const> classes) {
  for (const ClassInfo* info : classes) weaveClass(package, *info);
}

void AbstractMetaPackage::weaveClass(const Package& package, const ClassInfo& info) {
  Class type = created<Class>(info.id);
  type->setOwningPackage(package);
  if (info.superclass) type->setSuperclass(Class(typeNamed(info.superclass->name)));
  for (const PropertyInfo& own : info.own) {
    const Property property = created<Property>(own.id);
    property->setOwningType(type);
    property->setType(typeNamed(own.typeName()));
    property->setIsQualificationUnique(true);
    if (!own.key.empty()) property->setQualifiedBy(created<Property>(own.type().find(own.key)->id));
  }
  for (const OperationInfo& own : info.operations) {
    const std::string name = joined(info.name, own.name);
    const Operation operation = created<Operation>(uuidOfName(name));
    operation->setOwningType(type);
    weaveParameter(operation, own.result);
    for (const ParameterInfo& parameter : own.arguments) {
      const Argument argument = created<Argument>(uuidOfName(joined(name, parameter.name)));
      argument->setOperation(operation);
      weaveParameter(argument, parameter);
      argument->setIsOrdered(parameter.isMany);
    }
    setInvoker(operation, own.invoke);
  }
  registry_->registerType(type, &collectionOf, info.makeBuilder);
  registry_->registerTypeNames(type, info.name, nativeName(info.name));
}

void AbstractMetaPackage::weaveParameter(const TypedElement& described, const ParameterInfo& info) {
  described->setType(typeNamed(info.typeName()));
  described->setLower(info.isMany ? 0 : 1);
  described->setUpper(info.isMany ? TypedElement::unbounded : 1);
}

void AbstractMetaPackage::weavePrimitiveType(const Package& package, std::string_view name,
                                             std::string_view native,
                                             PropertySerializerRegistry::Serializer serializer) {
  const Type type = typeNamed(name);
  type->setOwningPackage(package);
  registry_->registerTypeNames(type, name, native);
  if (serializer)
    registry_->getSerializers().registerPropertySerializer(type, std::move(serializer));
}

}  // namespace orb::zero::meta
