#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <orb/zero/ModelElement.h>
#include <orb/zero/hb/Api.h>
#include <orb/zero/hb/ValueMarshaler.h>
#include <tyve/COSClassInfo.h>

namespace orb::zero::hb {

/// A property of several values as the host sees it.
struct CollectionView {
  const meta::PropertyInfo& property;
  tyve::Name className;  ///< see `CollectionClass`
  const ValueMarshaler& items;
  const ValueMarshaler* keys;  ///< null when the values have no keys
};

/// What stands behind the host object of a collection: the owner and the property. It shows what
/// the collection holds now, and is valid as long as the owner is.
class ORB_ZERO_HB_API CollectionObject final : public tyve::NativeObject {
 public:
  /// The view is that of a host class, and lives as long.
  CollectionObject(ModelElement owner, const CollectionView& view) noexcept
      : owner_(std::move(owner)), view_(view) {}

  bool isValid() const noexcept override;
  bool isEqual(const NativeObject& other) const noexcept override;
  std::size_t hash() const noexcept override;
  const void* domain() const noexcept override;

  std::size_t size() const;
  /// The value at a place, from 0. Raises "IndexOutOfRange" when there is none.
  tyve::Value at(std::int32_t place) const;
  /// The element under a key; an empty handle when there is none.
  tyve::Value find(const tyve::Value& key) const;
  tyve::Value keys() const;
  tyve::Value values() const;

 private:
  const ModelElement::Impl& owner() const { return *owner_.operator->(); }
  const meta::PropertyServices& services() const { return view_.property.services; }

  ModelElement owner_;
  const CollectionView& view_;
};

/// A host class of collections:
///
/// | class | superclass | members |
/// |---|---|---|
/// | orb.zero.Set | | `size`, `values` |
/// | orb.zero.Sequence | orb.zero.Set | `at` by the place, from 0 |
/// | orb.zero.Map | orb.zero.Set | `at` by the key, `keys` |
/// | orb.zero.Multimap | orb.zero.Map | |
/// | orb.zero.PrimitiveSet | | `size`, `values`, `at` by the place |
/// | orb.zero.PrimitiveSequence | orb.zero.PrimitiveSet | |
/// | orb.zero.PrimitiveAssociativeCollection | orb.zero.PrimitiveSet | `at` by the key, `keys` |
class ORB_ZERO_HB_API CollectionClass final : public tyve::COSClassInfo {
 public:
  enum Members : unsigned { Inherited = 0, Listing = 1, Places = 2, Keys = 4 };

  CollectionClass(std::string_view name, std::string_view superclass, unsigned members,
                  std::string documentation);

  /// The class, and the size as long as there is an owner.
  std::string print(const tyve::Value& object) const override;

  /// The class for a property that holds elements.
  static std::string_view nameFor(const meta::PropertyInfo& property);

 private:
  template <class Call>
  void addReader(std::string_view name, std::string_view result, std::string_view argument,
                 Call call, std::string documentation);
};

}  // namespace orb::zero::hb
