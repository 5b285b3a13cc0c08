#pragma once

#include <string>

#include <orb/zero/hb/Api.h>
#include <orb/zero/meta/Enum.h>
#include <tyve/COSClassInfo.h>

namespace orb::zero::hb {

/// The host class of an enumeration, made from its description: a member for each literal, and the
/// methods `getValue`, `getLiteral` and `getPublicIdentifier` of members.
///
/// Making it also tells the class system how to convert to the class, under the three type words
/// that are the class name, alone for any number of members, with " property" for at most one, and
/// with " scalar" for one. Members are made of exactly the texts of the literals.
class ORB_ZERO_HB_API EnumWrapperInfo : public tyve::COSClassInfo {
 public:
  EnumWrapperInfo(const meta::Enum& type, std::string documentation);
  ~EnumWrapperInfo() override;
};

}  // namespace orb::zero::hb
