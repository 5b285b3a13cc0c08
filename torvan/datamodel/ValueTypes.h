#pragma once

#include <orb/zero/Hash.h>
#include <orb/zero/ValueTraits.h>
#include <torvan/datamodel/BitSet.h>
#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/boolean3.h>

/// The types of the data model that an `orb::zero::Value` holds beside those of the framework.
namespace orb::zero {

template <>
struct ValueTraits<torvan::datamodel::BitSet> {
  static constexpr std::string_view name() noexcept { return "BitSet"; }
  /// Mixes the words and then the length, so that it is not 0 for clear bits.
  TORVAN_DATAMODEL_API static std::uint64_t hash(const torvan::datamodel::BitSet& bits);
};
template <>
struct ValueTraits<torvan::datamodel::boolean3> : NumberTraits<torvan::datamodel::boolean3> {
  static constexpr std::string_view name() noexcept { return "torvan.datamodel.boolean3"; }
};
template <>
struct ValueTraits<torvan::datamodel::LatticeValue*> {
  static constexpr std::string_view name() noexcept { return "LatticeValuePtr"; }
  static std::uint64_t hash(const torvan::datamodel::LatticeValue* slot) noexcept {
    return reinterpret_cast<std::uintptr_t>(slot);
  }
};
template <>
struct ValueTraits<torvan::datamodel::Ref> {
  static constexpr std::string_view name() noexcept { return "Ref"; }
  /// All references share one hash.
  static std::uint64_t hash(const torvan::datamodel::Ref&) noexcept { return 0; }
};

}  // namespace orb::zero
