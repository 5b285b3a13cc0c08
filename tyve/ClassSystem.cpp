#include <tyve/ClassSystem.h>

#include <atomic>
#include <utility>

#include <tyve/Exception.h>

namespace tyve {
namespace {

std::atomic<bool> isUsingUSM = false;

}  // namespace

bool omGetTyveUsingUSM() noexcept { return isUsingUSM; }
void omSetTyveUsingUSM(bool isUsing) noexcept { isUsingUSM = isUsing; }

ClassSystem& ClassSystem::getInstance() {
  static ClassSystem& instance = *new ClassSystem;  // outlives all that refers to a class
  return instance;
}

Package& ClassSystem::addPackage(std::unique_ptr<Package> package) {
  return root_.addSubPackage(std::move(package));
}

Package* ClassSystem::findPackage(Name name) {
  if (!name) return &root_;
  Package* const parent = findPackage(name.parent());
  return parent ? parent->findSubPackage(name) : nullptr;
}

const COSClassInfo* ClassSystem::findClass(Name name) {
  if (!name) return nullptr;
  auto& found = name.entry_->foundClass;
  if (const COSClassInfo* const known = found.load(std::memory_order_acquire)) return known;
  const std::lock_guard lock(mutex_);
  Package* const package = findPackage(name.parent());
  const COSClassInfo* const info = package ? package->findClass(name) : nullptr;
  found.store(info, std::memory_order_release);
  return info;
}

const COSClassInfo& ClassSystem::getClass(Name name) {
  const COSClassInfo* const info = findClass(name);
  if (!info) raise("UnknownClass", {name.text()});
  return *info;
}

Value ClassSystem::announce(std::shared_ptr<const NativeObject> native, Name className) {
  getClass(className);
  return Value::object(className, std::move(native));
}

Value ClassSystem::makeHeterogeneous(std::vector<Value> objects) {
  if (objects.empty()) return {};
  const Size size{1, objects.size()};
  const Value all = Value::objects(intern("numbat.mixin.Heterogeneous"), std::move(objects), size);
  Name last = all.at(0).className();
  const COSClassInfo* common = &getClass(last);
  for (std::size_t i = 1; common && i < all.count(); ++i) {
    const Name name = all.at(i).className();
    if (std::exchange(last, name) == name) continue;
    const COSClassInfo& info = getClass(name);
    while (common && !info.isSubclassOf(common->getName())) common = common->getSuperclass();
  }
  return common ? all.withClass(common->getName()) : all;
}

}  // namespace tyve
