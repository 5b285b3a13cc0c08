#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include <orb/zero/Model.h>
#include <orb/zero/ModelElement.h>

namespace orb::zero {

/// Whether a search for the type finds elements of the class.
bool isFound(const meta::ClassInfo& actual, const meta::ClassInfo& type,
             query::SearchClassMatchMode mode) noexcept;

/// The live elements of a model, all or those of a class, in the order of their creation. While it
/// exists, elements may be created (they are met as well) and destroyed (they are not). The end is
/// a sentinel, for range `for` and `std::ranges`.
class ORB_ZERO_API ElementRange {
 public:
  class Iterator {
   public:
    using value_type = ModelElement;
    using difference_type = std::ptrdiff_t;

    ModelElement operator*() const;
    Iterator& operator++() {
      ++index_;
      return settle();
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const noexcept;

   private:
    friend class ElementRange;
    Iterator(const ElementRange& range, std::uint32_t index) : range_(&range), index_(index) {}
    /// Goes on to the next element that belongs to the range.
    Iterator& settle();

    const ElementRange* range_;
    std::uint32_t index_;
  };

  /// All elements when `type` is null.
  ElementRange(const Model& model, const meta::ClassInfo* type,
               query::SearchClassMatchMode mode) noexcept;
  ElementRange(const ElementRange& other) noexcept;
  ElementRange& operator=(const ElementRange&) = delete;
  ~ElementRange();

  Iterator begin() const;
  std::default_sentinel_t end() const noexcept { return {}; }

 private:
  Model model_;
  const meta::ClassInfo* type_;
  query::SearchClassMatchMode mode_;
};

}  // namespace orb::zero
