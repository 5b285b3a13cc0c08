#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <string_view>
#include <type_traits>
#include <vector>

#include <orb/zero/Hash.h>
#include <orb/zero/Probing.h>

namespace orb::zero {

/// Finds nodes by key: open addressing with linear probing. It is made once it has been missed
/// often enough to pay, and then told of every change.
template <class Node>
class KeyIndex {
 public:
  using Key = std::remove_const_t<typename Node::first_type>;

  bool isMade() const noexcept { return !table_.empty(); }
  /// Whether to make it, for so many nodes among which one had to be searched once more.
  bool isDue(std::size_t size) noexcept { return size >= smallest && ++searches_ >= size / 8; }
  /// For so many nodes, which are to be inserted then; not made for lack of memory.
  void make(std::size_t size) noexcept try {
    taken_ = searches_ = 0;
    std::vector<Entry>(std::bit_ceil(2 * size + 1)).swap(table_);
  } catch (const std::bad_alloc&) {
  }
  void drop() noexcept {
    table_ = {};
    taken_ = searches_ = 0;
  }

  Node* find(const Key& key) const noexcept {
    const std::uint64_t hash = hashOf(key);
    for (std::size_t at = home(hash); table_[at].isTaken(); at = next(at))
      if (table_[at].mayBe(hash) && isSame(table_[at].node()->first, key)) return table_[at].node();
    return nullptr;
  }
  /// Needs no memory but to grow; without any it is dropped.
  void insert(Node& node) noexcept {
    if (!isMade()) return;
    if (2 * (taken_ + 1) > table_.size() && !grow()) return drop();
    put(node);
    ++taken_;
  }
  void erase(const Node& node) noexcept {
    if (!isMade()) return;
    std::size_t gap = homeOf(node);
    while (table_[gap].node() != &node) gap = next(gap);
    closeGap(table_, gap, [this](const Entry& entry) { return homeOf(*entry.node()); });
    --taken_;
  }

 private:
  static constexpr std::size_t smallest = 32;

  /// A node's address, which has at most 48 bits, below 16 bits of its hash: half the table misses
  /// the caches half as often.
  class Entry {
   public:
    Entry() noexcept = default;
    Entry(Node& node, std::uint64_t hash) noexcept
        : word_(reinterpret_cast<std::uintptr_t>(&node) | hash << addressBits) {}

    bool isTaken() const noexcept { return word_ != 0; }
    bool mayBe(std::uint64_t hash) const noexcept {
      return (word_ ^ hash << addressBits) >> addressBits == 0;
    }
    Node* node() const noexcept {
      return reinterpret_cast<Node*>(word_ & ((std::uintptr_t{1} << addressBits) - 1));
    }

   private:
    static constexpr int addressBits = 48;
    static_assert(sizeof(std::uintptr_t) == 8);
    std::uintptr_t word_ = 0;
  };

  static constexpr bool isText = std::is_convertible_v<const Key&, std::string_view>;
  static std::uint64_t hashOf(const Key& key) noexcept {
    if constexpr (isText)
      return hashText(key);
    else
      return std::hash<Key>()(key) * 0x9E3779B97F4A7C15;
  }
  static bool isSame(const Key& a, const Key& b) noexcept {
    if constexpr (isText)
      return isSameText(a, b);
    else
      return a == b;
  }
  /// The highest bits of a product are the ones that all of its factors have a part in.
  std::size_t home(std::uint64_t hash) const noexcept {
    return hash >> (std::countl_zero(table_.size()) + 1);
  }
  std::size_t homeOf(const Node& node) const noexcept { return home(hashOf(node.first)); }
  std::size_t next(std::size_t at) const noexcept { return (at + 1) & (table_.size() - 1); }
  void put(Node& node) noexcept {
    const std::uint64_t hash = hashOf(node.first);
    std::size_t at = home(hash);
    while (table_[at].isTaken()) at = next(at);
    table_[at] = Entry(node, hash);
  }
  bool grow() noexcept try {
    std::vector<Entry> smaller(2 * table_.size());
    smaller.swap(table_);
    for (const Entry& entry : smaller)
      if (entry.isTaken()) put(*entry.node());
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }

  std::vector<Entry> table_;  // a power of two of places, at most half of them taken
  std::size_t taken_ = 0;
  std::size_t searches_ = 0;  // before it is made
};

}  // namespace orb::zero
