#pragma once

#include <algorithm>
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
  /// Told when the creation order ends here, from where on nothing is left.
  void cut(std::uint32_t births) noexcept { covered_ = std::min(covered_, births); }
  /// Told when the elements have got new places and before the order is closed up.
  void renumber(const Elements& all) noexcept;

 private:
  /// What is known without a look at the element.
  struct Entry {
    bool isTaken() const noexcept { return place != UINT32_MAX; }
    std::uint32_t hash = 0;
    std::uint32_t place = UINT32_MAX;  // in the creation order
  };
  void catchUp(const Elements& all);
  void insert(Entry entry) noexcept;
  static std::uint32_t hashOf(const uuid& id) noexcept {
    return static_cast<std::uint32_t>(UuidHash()(id));
  }
  std::size_t home(std::uint32_t hash) const noexcept { return hash & (table_.size() - 1); }
  std::size_t next(std::size_t at) const noexcept { return (at + 1) & (table_.size() - 1); }

  std::vector<Entry> table_;  // a power of two of entries, at most half of them taken
  std::size_t taken_ = 0;
  std::uint32_t covered_ = 0;  // places of the creation order already looked at
};

}  // namespace orb::zero
