#include <tyve/Package.h>

#include <utility>

#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>

namespace tyve {
namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

/// What the table holds by now, for readers without the lock.
template <class T>
std::vector<T*> listOf(const NameTable<T>& table) {
  std::vector<T*> list;
  list.reserve(table.items().size());
  for (const auto& item : table.items()) list.push_back(item.get());
  return list;
}

}  // namespace

Package::Package(Name name) : name_(name) {}
Package::~Package() = default;

void Package::initializePackage() {}

std::recursive_mutex& Package::mutex() { return ClassSystem::getInstance().mutex_; }

Package& Package::addSubPackage(std::unique_ptr<Package> package) {
  const Name name = package->getName();
  checkInside(name);
  const Lock lock(mutex());
  return *subPackages_.add(name, std::move(package)).first;
}

std::vector<Package*> Package::getSubPackages() const {
  const Lock lock(mutex());
  return listOf(subPackages_);
}

Package* Package::findSubPackage(Name name) const {
  const Lock lock(mutex());
  return subPackages_.find(name);
}

std::vector<const COSClassInfo*> Package::getClasses() {
  const Lock lock(mutex());
  registerClasses();
  return listOf(classes_);
}

const COSClassInfo* Package::findClass(Name name) {
  const Lock lock(mutex());
  registerClasses();
  return classes_.find(name);
}

const COSClassInfo& Package::addClass(std::unique_ptr<const COSClassInfo> info) {
  const Name name = info->getName();
  checkInside(name);
  const Lock lock(mutex());
  return *classes_.add(name, std::move(info)).first;
}

void Package::registerClasses() {
  if (isRegistered_) return;
  isRegistered_ = true;  // who asks meanwhile, this thread only, is given what is there by then
  try {
    initializePackage();
  } catch (...) {
    isRegistered_ = false;
    throw;
  }
}

void Package::checkInside(Name name) const {
  if (!name || name.parent() != name_) raise("NotInPackage", {name_.text(), name.text()});
}

}  // namespace tyve
