#include <orb/zero/ElementPool.h>

#include <algorithm>

namespace orb::zero {
namespace {

constexpr std::size_t firstChunk = 4096;
constexpr std::size_t largestChunk = 1 << 18;

}  // namespace

void* ElementPool::carve(std::size_t size) {
  if (left_ < size) {
    const std::size_t doubled = firstChunk << std::min<std::size_t>(chunks_.size(), 6);
    const std::size_t bytes = std::max(size, std::min(doubled, largestChunk));
    chunks_.push_back(
        std::make_unique_for_overwrite<Line[]>((bytes + sizeof(Line) - 1) / sizeof(Line)));
    next_ = chunks_.back()[0].bytes;
    left_ = bytes;
  }
  void* const block = next_;
  next_ += size;
  left_ -= size;
  return block;
}

}  // namespace orb::zero
