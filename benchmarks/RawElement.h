#pragma once

#include <orb/zero/Uuid.h>

#include <cstdint>

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

}  // namespace torvan::datamodel::benchmarks
