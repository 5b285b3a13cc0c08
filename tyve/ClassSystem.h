#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include <tyve/Package.h>
#include <tyve/factory/TypeRepository.h>

namespace tyve {

/// The classes of the host, by packages; one per process, never destroyed. Packages and the look-up
/// in them are guarded by one mutex, which is also locked while a package registers its classes.
/// What was found is read without it.
class TYVE_API ClassSystem {
 public:
  static ClassSystem& getInstance();
  ClassSystem(const ClassSystem&) = delete;
  ClassSystem& operator=(const ClassSystem&) = delete;

  /// Adds a top-level package, unless there is one of its name; returns the one that is there then.
  Package& addPackage(std::unique_ptr<Package> package);
  /// The top-level packages, in the order of their arrival.
  std::vector<Package*> getPackages() const { return root_.getSubPackages(); }
  /// The package of this dotted name, at any level; null when there is none.
  Package* findPackage(Name name);
  /// The class of this dotted name, registered by its package if need be; null when there is none.
  const COSClassInfo* findClass(Name name);
  /// The same; raises "UnknownClass" when there is none.
  const COSClassInfo& getClass(Name name);

  /// What the type words of signatures mean.
  factory::TypeRepository& types() noexcept { return types_; }

  /// The binding of a native object to a host class, the most derived one that it is of: the host
  /// object, which tells its class from then on. It keeps the native object alive; nothing else is
  /// kept of it. Raises "UnknownClass" when there is no such class.
  Value announce(std::shared_ptr<const NativeObject> native, Name className);

  /// Objects of various classes as one row, whose class is the nearest one that they have in
  /// common, or "numbat.mixin.Heterogeneous" when they have none; of no objects, the classless
  /// empty object. Raises "WrongValue" for what is not one object.
  Value makeHeterogeneous(std::vector<Value> objects);

 private:
  friend class Package;

  ClassSystem() = default;
  ~ClassSystem() = default;

  std::recursive_mutex mutex_;  // a package that registers its classes asks for others
  Package root_{Name()};
  factory::TypeRepository types_;
};

/// Whether packages are to be registered again by every call of an initialisation entry, instead of
/// once per process. The class system works either way; a host that loads libraries anew says so.
TYVE_API bool omGetTyveUsingUSM() noexcept;
TYVE_API void omSetTyveUsingUSM(bool isUsing) noexcept;

}  // namespace tyve
