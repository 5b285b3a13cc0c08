#pragma once

#include <string>
#include <utility>

#include <orb/zero/meta/Package.h>
#include <orb/zero/meta/impl/TypeImpl.h>

namespace orb::zero::meta {

class ORB_ZERO_API Package::Impl : public ImplOf<Package> {
  std::u16string uri_;
  OwnedSequence<Package> packages_{*this, &Package::packages};
  OwnedSequence<Type> types_{*this, &Package::types};

 public:
  static constexpr Table table{
      Instances::Concrete,
      "orb.zero.meta.Package",
      "86555bd8-7cc2-3d50-9a6d-e50b2f830ea7",
      Row{&Impl::uri_, "uri", 2, "4194165d-2aca-3411-9990-2e55fadd3305", Ordered | Unique},
      Row{&Impl::packages_, "packages", 3, "a30f9174-29b1-30a0-824a-efddeb75dc7e", Ordered},
      Row{&Impl::types_, "types", 4, "d8d59cf8-3754-3358-88a5-0c3e24e706a0", Ordered}};

  const std::u16string& getUri() const noexcept { return uri_; }
  void setUri(std::u16string value) { set<&Impl::uri_>(std::move(value)); }

  OwnedSequence<Package>& getPackages() noexcept { return packages_; }
  const OwnedSequence<Package>& getPackages() const noexcept { return packages_; }
  OwnedSequence<Type>& getTypes() noexcept { return types_; }
  const OwnedSequence<Type>& getTypes() const noexcept { return types_; }

  Package getParentPackage() const { return Package(getContainer()); }
  void setParentPackage(const Package& value) { value->getPackages().add(This()); }
};

inline void Type::Impl::setOwningPackage(const Package& value) { value->getTypes().add(This()); }

}  // namespace orb::zero::meta
