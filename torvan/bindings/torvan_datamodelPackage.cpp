#include <torvan/bindings/torvan_datamodelPackage.h>

#include <memory>
#include <mutex>

#include <orb/zero/hb/FrameworkPackage.h>
#include <orb/zero/hb/HostError.h>
#include <torvan/bindings/Wrappers.h>
#include <torvan/bindings/boolean3Wrapper.h>
#include <torvan/bindings/session/impl/SessionPackage.h>
#include <torvan/datamodel/impl/MetaPackageTorvan_datamodel.h>
#include <tyve/ClassSystem.h>

namespace torvan::datamodel::hb {
namespace {

template <class Add, class... X>
void forEachWrapper(Add add, meta::ClassList<X...>) {
  (add(std::make_unique<const Wrapper<X>>()), ...);
}

void registerAll() {
  orb::zero::hb::registerFramework();
  boolean3Wrapper::registerMarshaler();
  orb::zero::hb::registerPackage(std::make_unique<torvan_datamodelPackage>());
  orb::zero::hb::registerPackage(std::make_unique<SessionPackage>());
}

}  // namespace

torvan_datamodelPackage::torvan_datamodelPackage()
    : EmptyParentPackage(tyve::intern("torvan.datamodel")) {}
torvan_datamodelPackage::~torvan_datamodelPackage() = default;

void torvan_datamodelPackage::initializePackage() {
  orb::zero::hb::asHost([this] {
    MetaPackageTorvan_datamodel::getInstance().ensureInitialized();
    forEachWrapper([this](auto wrapper) { addClass(std::move(wrapper)); }, ModelClasses());
    addClass(std::make_unique<const boolean3Wrapper>());
  });
}

}  // namespace torvan::datamodel::hb

void HBInitialize_torvan_datamodel() {
  using torvan::datamodel::hb::registerAll;
  static std::once_flag registered;
  if (tyve::omGetTyveUsingUSM())
    registerAll();
  else
    std::call_once(registered, registerAll);
}

void HBTerminate_torvan_datamodel() {}
