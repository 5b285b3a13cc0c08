#include <orb/zero/hb/EmptyParentPackage.h>

#include <utility>

#include <tyve/ClassSystem.h>

namespace orb::zero::hb {

EmptyParentPackage::EmptyParentPackage(tyve::Name name) : tyve::Package(name) {}
EmptyParentPackage::~EmptyParentPackage() = default;

void EmptyParentPackage::initializePackage() {}

tyve::Package& registerPackage(std::unique_ptr<tyve::Package> package) {
  auto& classSystem = tyve::ClassSystem::getInstance();
  const tyve::Name parentName = package->getName().parent();
  if (!parentName) return classSystem.addPackage(std::move(package));
  tyve::Package* parent = classSystem.findPackage(parentName);
  if (!parent) parent = &registerPackage(std::make_unique<EmptyParentPackage>(parentName));
  return parent->addSubPackage(std::move(package));
}

}  // namespace orb::zero::hb
