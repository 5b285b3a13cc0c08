#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace torvan::slicer {

/// Sets of the numbers 0, 1, 2, ... that only ever grow together (union-find).
class DisjointSets {
 public:
  std::size_t size() const { return parents_.size(); }

  /// Adds the next `count` numbers, each as a set of its own.
  void add(std::size_t count) {
    for (; count > 0; --count) parents_.push_back(parents_.size());
  }

  /// False when they were in one set before.
  bool unite(std::size_t first, std::size_t second) {
    const std::size_t one = find(first), other = find(second);
    parents_[other] = one;
    return one != other;
  }

  /// The number that stands for the whole set.
  std::size_t find(std::size_t member) {
    while (parents_[member] != member)
      member = std::exchange(parents_[member], parents_[parents_[member]]);
    return member;
  }

 private:
  std::vector<std::size_t> parents_;
};

}  // namespace torvan::slicer
