#include <orb/zero/ElementPool.h>

#include <algorithm>
#include <new>

namespace orb::zero {
namespace {

// A pool would hide errors from the address sanitizer.
#ifdef __SANITIZE_ADDRESS__
constexpr bool isPooling = false;
#else
constexpr bool isPooling = true;
#endif

constexpr std::size_t firstChunk = 4096;
constexpr std::size_t largestChunk = 1 << 18;

}  // namespace

void* ElementPool::allocate(std::size_t size) {
  if (!isPooling || size > largest) return ::operator new(size);
  Free*& free = free_[classOf(size)];
  if (!free) return carve(classOf(size) * step);
  void* const block = free;
  free = free->next;
  return block;
}

void ElementPool::deallocate(void* block, std::size_t size) noexcept {
  if (!isPooling || size > largest) return ::operator delete(block);
  Free*& free = free_[classOf(size)];
  free = new (block) Free{free};
}

void* ElementPool::carve(std::size_t size) {
  if (left_ < size) {
    const std::size_t doubled = firstChunk << std::min<std::size_t>(chunks_.size(), 6);
    const std::size_t bytes = std::min(doubled, largestChunk);
    chunks_.push_back(std::make_unique_for_overwrite<std::byte[]>(bytes));
    next_ = chunks_.back().get();
    left_ = bytes;
  }
  void* const block = next_;
  next_ += size;
  left_ -= size;
  return block;
}

}  // namespace orb::zero
