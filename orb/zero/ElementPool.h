#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include <orb/zero/Api.h>

namespace orb::zero {

/// The memory of the elements of one model. Blocks are kept by size: one that is given back serves
/// the next element of about that size. Those that fill whole lines of the processor's caches begin
/// with one. All memory goes with the pool.
class ORB_ZERO_API ElementPool {
 public:
  void* allocate(std::size_t size) {
    if (!isPooling || size > largest) return ::operator new(size);
    Free*& free = free_[classOf(size)];
    if (!free) return carve(sizeOf(classOf(size)));
    void* const block = free;
    free = free->next;
    return block;
  }
  void deallocate(void* block, std::size_t size) noexcept {
    if (!isPooling || size > largest) return ::operator delete(block);
    Free*& free = free_[classOf(size)];
    free = new (block) Free{free};
  }

 private:
  struct Free {
    Free* next;
  };
// A pool would hide errors from the address sanitizer.
#ifdef __SANITIZE_ADDRESS__
  static constexpr bool isPooling = false;
#else
  static constexpr bool isPooling = true;
#endif
  // Sizes are multiples of 16 up to 512, and from there on eight between each power of two and the
  // next.
  static constexpr std::size_t step = 16, fine = 512, largest = 16384;
  static constexpr std::size_t classOf(std::size_t size) noexcept {
    if (size <= fine) return (size + step - 1) / step;
    const auto width = static_cast<std::size_t>(std::bit_width(size - 1));  // 10 for 513 to 1024
    return fine / step + 8 * (width - 10) + ((size - 1) >> (width - 4)) - 7;
  }
  static constexpr std::size_t sizeOf(std::size_t index) noexcept {
    if (index <= fine / step) return index * step;
    const std::size_t above = index - fine / step - 1;
    return (above % 8 + 9) << (above / 8 + 6);
  }
  struct alignas(64) Line {
    std::byte bytes[64];
  };
  /// What is left of a chunk.
  struct Rest {
    std::byte* next = nullptr;
    std::size_t size = 0;
  };
  void* carve(std::size_t size);

  std::array<Free*, fine / step + std::size_t{8} * 5 + 1> free_{};
  std::vector<std::unique_ptr<Line[]>> chunks_;
  Rest lines_, odd_;  // for blocks of whole lines, and for others
};

}  // namespace orb::zero
