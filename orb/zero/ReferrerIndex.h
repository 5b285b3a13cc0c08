#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include <orb/zero/ModelElement.h>

namespace orb::zero {

/// Tells which elements of a model may refer to an element. Filled by the first question and caught
/// up by later ones. It is a hint: references change without telling it, so what it names has to be
/// looked at, and may not be all.
class ReferrerIndex {
 public:
  using Elements = std::vector<ModelElement::Impl*>;

  /// Appends the places in the creation order of the elements that referred to the target when they
  /// were looked at.
  void find(const ModelElement::Impl& target, const Elements& all,
            std::vector<std::uint32_t>& places);
  /// Told when the creation order ends earlier than before.
  void truncate(std::uint32_t size) noexcept;

 private:
  void catchUp(const Elements& all);

  struct Entry {
    std::uint32_t place;
    std::uint32_t next;  // of the same target, from 1; 0 for none
  };
  std::unordered_map<const ModelElement::Impl*, std::uint32_t> first_;
  std::vector<Entry> entries_;
  std::uint32_t covered_ = 0;  // places already looked at
};

}  // namespace orb::zero
