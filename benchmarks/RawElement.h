#pragma once

#include <orb/zero/Uuid.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace torvan::datamodel::benchmarks {

/// What is left of an element without a framework: an object as big as an `Impl`, with a virtual
/// destructor, a UUID, an owner and a place.
template <class Impl>
struct RawElement {
  explicit RawElement(const orb::zero::uuid& newId) : id(newId) {}
  RawElement(const RawElement&) = delete;
  RawElement& operator=(const RawElement&) = delete;
  virtual ~RawElement() = default;

  orb::zero::uuid id;
  void* owner = nullptr;
  std::uint32_t place = 0;
  unsigned char
      rest[sizeof(Impl) - 2 * sizeof(void*) - sizeof(orb::zero::uuid) - sizeof(std::uint32_t)] = {};
};

/// The same of a power set: an object with a virtual table, a count, a UUID and its words.
struct RawSet {
  RawSet(const orb::zero::uuid& newId, const std::vector<std::uint64_t>& content)
      : id(newId), words(content) {}
  RawSet(const RawSet&) = delete;
  RawSet& operator=(const RawSet&) = delete;
  virtual ~RawSet() = default;
  /// A copy that the words of the other set are united with.
  RawSet* join(const orb::zero::uuid& newId, const RawSet& other) const {
    auto* const result = new RawSet(newId, words);
    for (std::size_t i = 0; i < words.size(); ++i) result->words[i] |= other.words[i];
    return result;
  }

  orb::zero::uuid id;
  std::uint32_t count = 0;
  std::vector<std::uint64_t> words;
};

}  // namespace torvan::datamodel::benchmarks
