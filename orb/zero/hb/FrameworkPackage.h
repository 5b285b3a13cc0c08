#pragma once

#include <orb/zero/hb/EmptyParentPackage.h>

namespace orb::zero::hb {

/// The host package "orb.zero": models, the root class of all elements, collections; and inside it
/// "orb.zero.meta", the classes of the descriptions, which the host may only read.
///
/// The members of "orb.zero.Model" and "orb.zero.ModelElement" are listed with them in the source.
class ORB_ZERO_HB_API FrameworkPackage final : public EmptyParentPackage {
 public:
  FrameworkPackage();

 protected:
  void initializePackage() override;
};

/// Registers both packages, unless that was done before.
ORB_ZERO_HB_API void registerFramework();

}  // namespace orb::zero::hb
