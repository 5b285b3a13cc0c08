#pragma once

#include <orb/zero/hb/EnumWrapperInfo.h>
#include <orb/zero/hb/PolicyBasedEnumValueMarshaler.h>
#include <torvan/bindings/Api.h>
#include <torvan/datamodel/ValueTypes.h>

namespace torvan::datamodel::hb {

/// The host class of the enumeration `boolean3`.
class TORVAN_BINDINGS_API boolean3Wrapper final : public orb::zero::hb::EnumWrapperInfo {
 public:
  using Marshaler = orb::zero::hb::PolicyBasedEnumValueMarshaler<boolean3>;

  boolean3Wrapper();
  ~boolean3Wrapper() override;

  /// To be called before classes with operations on `boolean3` are made.
  static void registerMarshaler();
};

}  // namespace torvan::datamodel::hb
