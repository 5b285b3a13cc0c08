#pragma once

#include <memory>

#include <orb/zero/hb/Api.h>
#include <tyve/Package.h>

namespace orb::zero::hb {

/// A package of packages, without classes of its own.
class ORB_ZERO_HB_API EmptyParentPackage : public tyve::Package {
 public:
  explicit EmptyParentPackage(tyve::Name name);
  ~EmptyParentPackage() override;

 protected:
  void initializePackage() override;
};

/// Adds the package to the class system where its name says, with empty packages above it where
/// there are none. Does nothing when it is there already; returns the one that is there then.
ORB_ZERO_HB_API tyve::Package& registerPackage(std::unique_ptr<tyve::Package> package);

}  // namespace orb::zero::hb
