#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <orb/zero/ModelElement.h>

namespace orb::zero {

/// Finds the elements of a model by UUID: open addressing with linear probing. Filled by the first
/// look-up and caught up by later ones, so that a model that never asks pays nothing.
class UuidIndex {
 public:
  using Elements = std::vector<ModelElement::Impl*>;

  /// The live element of this UUID, or null; `all` is the creation order of the model.
  ModelElement::Impl* find(const uuid& id, const Elements& all);
  /// Told before an element leaves the creation order.
  void erase(const ModelElement::Impl& element, std::uint32_t index) noexcept;
  /// Told when the creation order is renumbered: how many of the places seen are left.
  std::uint32_t covered() const noexcept { return covered_; }
  void setCovered(std::uint32_t covered) noexcept { covered_ = covered; }

 private:
  void catchUp(const Elements& all);
  void insert(ModelElement::Impl& element) noexcept;
  std::size_t home(const uuid& id) const noexcept { return UuidHash()(id) & (table_.size() - 1); }

  std::vector<ModelElement::Impl*> table_;  // a power of two of places, at most half of them taken
  std::size_t taken_ = 0;
  std::uint32_t covered_ = 0;  // places of the creation order already looked at
};

}  // namespace orb::zero
