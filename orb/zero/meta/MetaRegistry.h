#pragma once

#include <list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include <orb/zero/Text.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/Package.h>
#include <orb/zero/meta/PrimitiveType.h>
#include <orb/zero/meta/PropertySerializerRegistry.h>

namespace orb::zero::meta {

class AbstractMetaPackage;

/// Describes all models of the process by elements of a model of its own: packages, and in them
/// classes with their properties and operations, enumerations and primitive types. Made on first
/// use, with the package of the framework itself, and never destroyed.
///
/// The tables are guarded by a mutex. Handles of the descriptions are counted like all handles and
/// therefore belong to one thread at a time; other threads use the constant records (`ClassInfo`,
/// `PropertyInfo`). Names are found by their UTF-8 or UTF-16 text.
class ORB_ZERO_API MetaRegistry {
 public:
  /// One change of the registry, by a package. Until it is left, the mutex is locked and the model
  /// may be written; if it is left without `commit`, the registry is as it was before. Inside
  /// another one it is part of that one.
  class Update;

  static MetaRegistry& getInstance();
  MetaRegistry(const MetaRegistry&) = delete;
  MetaRegistry& operator=(const MetaRegistry&) = delete;

  const Model& getModel() const noexcept { return model_; }
  std::recursive_mutex& getMutex() const noexcept { return mutex_; }
  PropertySerializerRegistry& getSerializers() noexcept { return serializers_; }

  /// The type registered under this name, dotted or native, or an empty handle.
  Type findType(std::string_view name) const;
  Type findType(std::u16string_view name) const { return findType(toUtf8(name)); }
  /// The same; raises "NoSuchType" with the name when there is none.
  Type requireType(std::string_view name) const;
  /// The record of the class of this name, for any thread; null when there is none.
  const ClassInfo* findRecord(std::string_view className) const;
  /// The primitive type of this name, or an empty handle.
  PrimitiveType getPrimitiveType(std::string_view name) const;
  PrimitiveType getPrimitiveType(std::u16string_view name) const {
    return getPrimitiveType(toUtf8(name));
  }
  /// The registered package with this URI, or an empty handle.
  Package findPackage(std::u16string_view uri) const;
  Package findPackage(std::string_view uri) const { return findPackage(toUtf16(uri)); }
  /// Whether there is one, for any thread.
  bool hasPackage(std::string_view uri) const;
  /// What is registered: each root package and, following it, what is inside.
  std::vector<Package> getPackages() const;
  std::vector<Type> getTypes() const;
  std::vector<Class> getClasses() const;

  /// Makes an empty element of the class with this name. Raises "NoSuchType" with the name when
  /// there is no such class, and "InvalidValue" for an abstract one.
  ModelElement createElement(const Model& model, std::string_view className) const;
  ModelElement createElement(const Model& model, std::u16string_view className) const {
    return createElement(model, toUtf8(className));
  }

  // What packages register; see `Update`.

  void registerRootPackage(const Package& package);
  /// Forgets the root package and the names and serializers of all types inside. Does nothing when
  /// there is none.
  void unregisterRootPackage(std::u16string_view uri);
  /// `builderFactory` is null for an abstract class and for what is no class.
  void registerType(const Type& type, CollectionAccessor collectionAccessor,
                    BuilderFactory builderFactory);
  void registerTypeNames(const Type& type, std::string_view qualified, std::string_view native);
  /// Whether the package is made by an open update.
  bool isMaking(const AbstractMetaPackage& package) const;

 private:
  struct Tables {
    std::map<std::string, Type, std::less<>> types;
    std::vector<Package> roots;
  };
  using Lock = std::lock_guard<std::recursive_mutex>;

  MetaRegistry();
  ~MetaRegistry() = default;

  mutable std::recursive_mutex mutex_;
  Model model_ = Model::create();
  Tables tables_;
  PropertySerializerRegistry serializers_{mutex_};
  Update* update_ = nullptr;  // the innermost open one
};

class ORB_ZERO_API MetaRegistry::Update {
 public:
  Update(MetaRegistry& registry, AbstractMetaPackage& package);
  Update(const Update&) = delete;
  Update& operator=(const Update&) = delete;
  ~Update();

  /// Destroys a package with all inside. What is outside and referred to it refers to proxies until
  /// the update commits.
  void remove(const Package& package);
  /// The outermost one makes its packages, and those of inner ones, count as initialised.
  void commit();

 private:
  friend class MetaRegistry;

  Lock lock_;
  MetaRegistry& registry_;
  Model::Freezer::Thaw thaw_;
  Transaction transaction_;
  Tables before_;
  PropertySerializerRegistry::Types serializersBefore_;
  Update* outer_;
  std::list<AbstractMetaPackage*> made_;
  std::vector<ModelElement> proxies_;  // of what was removed
  bool isCommitted_ = false;
};

}  // namespace orb::zero::meta
