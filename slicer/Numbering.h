#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <torvan/datamodel.h>

namespace torvan::slicer {

/// Numbers from 0 on, of which some stand for elements, which are kept: open addressing with linear
/// probing, where an entry is no more than a number.
class Numbering {
 public:
  using Number = std::uint32_t;
  using Element = datamodel::ModelElement::Impl;
  static constexpr Number none = UINT32_MAX;

  /// All numbers are smaller.
  std::size_t size() const { return elements_.size(); }
  /// Elements that have a number.
  std::size_t elements() const { return taken_; }
  Number find(const Element& element) const {
    if (table_.empty()) rehash(taken_);
    return table_[at(element)];
  }
  /// The number of the element, and whether it is a new one.
  std::pair<Number, bool> add(Element& element) {
    if (4 * (taken_ + 1) > 3 * table_.size()) rehash(taken_ + 1);
    Number& entry = table_[at(element)];
    const bool isNew = entry == none;
    if (isNew) {
      elements_.emplace_back(&element);
      entry = static_cast<Number>(size() - 1);
      ++taken_;
    }
    return {entry, isNew};
  }
  /// A number of no element.
  Number add() {
    elements_.emplace_back();
    return static_cast<Number>(size() - 1);
  }
  void reserve(std::size_t elements) {
    elements_.reserve(elements);
    rehash(elements);
  }
  /// Gives back memory that the next search takes again.
  void giveBack() { table_ = std::vector<Number>(); }

 private:
  /// Where the element is, or would be.
  std::size_t at(const Element& element) const {
    const std::size_t mask = table_.size() - 1;
    std::size_t at = (reinterpret_cast<std::uintptr_t>(&element) * 0x9E3779B97F4A7C15 >> 32) & mask;
    while (table_[at] != none && elements_[table_[at]].get() != &element) at = (at + 1) & mask;
    return at;
  }
  void rehash(std::size_t elements) const {
    table_.assign(std::bit_ceil(4 * elements / 3 + 1), none);
    for (Number number = 0; number < size(); ++number)
      if (elements_[number].get()) table_[at(*elements_[number].get())] = number;
  }

  std::vector<datamodel::ModelElement> elements_;  // by number
  mutable std::vector<Number> table_;              // a power of two, at most 3/4 of it taken
  std::size_t taken_ = 0;
};

}  // namespace torvan::slicer
