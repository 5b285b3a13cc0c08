#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include <orb/zero/Api.h>

namespace orb::zero {

/// The memory of the elements of one model. Blocks are kept by size: one that is given back serves
/// the next element of that size. All memory goes with the pool.
class ORB_ZERO_API ElementPool {
 public:
  void* allocate(std::size_t size);
  void deallocate(void* block, std::size_t size) noexcept;

 private:
  struct Free {
    Free* next;
  };
  static constexpr std::size_t step = 16;
  static constexpr std::size_t largest = 512;
  static std::size_t classOf(std::size_t size) noexcept { return (size + step - 1) / step; }
  void* carve(std::size_t size);

  std::array<Free*, largest / step + 1> free_{};
  std::vector<std::unique_ptr<std::byte[]>> chunks_;
  std::byte* next_ = nullptr;
  std::size_t left_ = 0;
};

}  // namespace orb::zero
