#include <torvan/bindings/boolean3Wrapper.h>

#include <memory>

#include <orb/zero/hb/MetaMarshalerRegistry.h>
#include <orb/zero/meta/MetaRegistry.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel::hb {

boolean3Wrapper::boolean3Wrapper()
    : EnumWrapperInfo(meta::Enum(meta::MetaRegistry::getInstance().requireType(
                          orb::zero::valueName<boolean3>())),
                      "The answer of the order: T, F, or NA when values cannot be compared.") {}

boolean3Wrapper::~boolean3Wrapper() = default;

void boolean3Wrapper::registerMarshaler() {
  orb::zero::hb::MetaMarshalerRegistry::getInstance().registerPropertyMarshaler(
      orb::zero::valueName<boolean3>(), std::make_unique<const Marshaler>());
}

}  // namespace torvan::datamodel::hb
