#pragma once

#include <atomic>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/Enum.h>
#include <orb/zero/meta/MetaRegistry.h>
#include <orb/zero/meta/Package.h>
#include <orb/zero/meta/PropertySerializerRegistry.h>

namespace orb::zero::meta {

/// Describes the classes of one model in the registry: first makes the descriptions, then ties them
/// together. A package class is a singleton, which names the packages and lists the records; what
/// is said of a class follows from its record.
class ORB_ZERO_API AbstractMetaPackage {
 public:
  AbstractMetaPackage(const AbstractMetaPackage&) = delete;
  AbstractMetaPackage& operator=(const AbstractMetaPackage&) = delete;

  /// Makes the descriptions, in the place of those from before, whose handles test false then. What
  /// other packages describe refers to the new ones of the same UUIDs, or to none where these are
  /// gone. If something is raised, such as "NoSuchType" with the name of a type that is missing,
  /// the registry is as it was.
  void initialize() { registerIn(MetaRegistry::getInstance()); }
  /// The same, unless it was done before. Every record does it when asked for its description;
  /// who looks for a class by name only does it first.
  void ensureInitialized();

  /// That of the root package.
  const std::u16string& getUri() const noexcept { return uri_; }

 protected:
  /// `uri` is that of the root package.
  explicit AbstractMetaPackage(std::u16string uri);
  virtual ~AbstractMetaPackage();

  /// The two steps.
  virtual void instantiate(MetaRegistry& registry) = 0;
  virtual void weave(MetaRegistry& registry, PropertySerializerRegistry& serializers) = 0;

  // What the steps are made of. UUIDs that are not given follow from names. Types are known by their
  // dotted names; one that is neither made here nor registered raises "NoSuchType".

  Package createPackage(std::u16string name, std::u16string uri);
  Class createClass(std::u16string name, std::string_view dotted, bool isAbstract, const uuid& id);
  Property createProperty(std::u16string name, ValueKind kind, bool isOwning, const uuid& id);
  void setPropertyIndex(const Property& property, int position);
  Operation createOperation(std::u16string name, const uuid& id);
  void setInvoker(const Operation& operation, Invoker invoker);
  Argument createArgument(std::u16string name, const uuid& id);
  PrimitiveType createPrimitiveType(std::string_view name);
  Enum createEnum(std::u16string name, std::string_view dotted, const uuid& id);
  EnumLiteral createEnumLiteral(std::u16string name, int value, const uuid& id);

  /// What the records say: classes with their properties, operations and arguments.
  void instantiateClasses(std::span<const ClassInfo* const> classes);
  /// Puts the classes into the package and ties what belongs to them.
  void weaveClasses(const Package& package, std::span<const ClassInfo* const> classes);
  /// `serializer` is null for values that are never saved or shown.
  void weavePrimitiveType(const Package& package, std::string_view name, std::string_view native,
                          PropertySerializerRegistry::Serializer serializer);

  /// The type of this name.
  Type typeNamed(std::string_view name) const;
  /// Finds the collections of an element by its class, see `MetaRegistry::registerType`.
  static Collection* collectionOf(ModelElement::Impl& element, const PropertyInfo& property);
  /// What was created under this UUID.
  template <class X>
  X created(const uuid& id) const {
    return X(registry_->getModel().find(id));
  }
  /// The package with this URI, and the UUID that follows from it.
  Package packageAt(std::u16string_view uri) const;

 private:
  friend class MetaRegistry;
  void registerIn(MetaRegistry& registry);
  /// An element of the registry's model with this name.
  template <class X>
  X create(std::u16string name, const uuid& id) const;
  void instantiateClass(const ClassInfo& info);
  void weaveClass(const Package& package, const ClassInfo& info);
  void weaveParameter(const TypedElement& described, const ParameterInfo& info);

  std::u16string uri_;
  MetaRegistry* registry_ = nullptr;  // known from the first step on
  std::map<std::string, Type, std::less<>> types_;
  std::atomic<bool> isInitialized_ = false;
};

}  // namespace orb::zero::meta
