#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include <tyve/COSClassInfo.h>

namespace tyve {

/// A package of host classes, and of packages inside. It owns both; they live as long as the
/// process. It registers its classes when they are first asked for. All threads may use it.
class TYVE_API Package {
 public:
  /// Its dotted name, such as "torvan.datamodel".
  explicit Package(Name name);
  virtual ~Package();
  Package(const Package&) = delete;
  Package& operator=(const Package&) = delete;

  Name getName() const noexcept { return name_; }

  /// Adds a package, unless there is one of its name; returns the one that is there then. Raises
  /// "NotInPackage" unless its name is that of this package, a point and one word more.
  Package& addSubPackage(std::unique_ptr<Package> package);
  /// What is there by now, in the order of its arrival.
  std::vector<Package*> getSubPackages() const;
  /// Null when there is none of this dotted name directly inside.
  Package* findSubPackage(Name name) const;

  /// Its classes in the order of their registration, registered by now.
  std::vector<const COSClassInfo*> getClasses();

 protected:
  /// Called when a class is first asked for, by one thread, to add them; a package of packages
  /// only has nothing to do. If it throws, the next one who asks calls it again.
  virtual void initializePackage();
  /// Adds a class, unless there is one of its name; returns the one that is there then. Raises
  /// "NotInPackage" unless its name is that of this package, a point and one word more.
  const COSClassInfo& addClass(std::unique_ptr<const COSClassInfo> info);

 private:
  friend class ClassSystem;
  static std::recursive_mutex& mutex();
  const COSClassInfo* findClass(Name name);
  void registerClasses();
  void checkInside(Name name) const;

  Name name_;
  bool isRegistered_ = false;
  NameTable<Package> subPackages_;
  NameTable<const COSClassInfo> classes_;
};

}  // namespace tyve
