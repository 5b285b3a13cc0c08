#pragma once

#include <orb/zero/hb/EmptyParentPackage.h>
#include <torvan/bindings/Api.h>

namespace torvan::datamodel::hb {

/// The host package "torvan.datamodel": the classes of the data model in the order of their names,
/// then the enumeration.
class TORVAN_BINDINGS_API torvan_datamodelPackage final : public orb::zero::hb::EmptyParentPackage {
 public:
  torvan_datamodelPackage();
  ~torvan_datamodelPackage() override;

 protected:
  void initializePackage() override;
};

}  // namespace torvan::datamodel::hb

/// What a host calls after it has loaded the library: registers the package, and those of the
/// framework. Calls after the first do nothing, unless the class system asks for a registration per
/// call; even then no package or class is there twice. Raises `std::system_error` when the
/// platform cannot tell the first call.
extern "C" TORVAN_BINDINGS_API void HBInitialize_torvan_datamodel();
/// What it calls before it lets the library go; there is nothing to be done.
extern "C" TORVAN_BINDINGS_API void HBTerminate_torvan_datamodel();
