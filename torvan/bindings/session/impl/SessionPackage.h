#pragma once

#include <orb/zero/hb/EmptyParentPackage.h>

namespace torvan::datamodel::hb {

/// The host package "torvan.session": the library's entry points for scripts.
class SessionPackage final : public orb::zero::hb::EmptyParentPackage {
 public:
  SessionPackage();

 protected:
  void initializePackage() override;
};

}  // namespace torvan::datamodel::hb
