#include <orb/zero/ElementPool.h>

#include <algorithm>

namespace orb::zero {
namespace {

constexpr std::size_t firstChunk = 4096;
constexpr std::size_t largestChunk = 1 << 18;

}  // namespace

void* ElementPool::carve(std::size_t size) {
  Rest& rest = size % sizeof(Line) == 0 ? lines_ : odd_;
  if (rest.size < size) {
    const std::size_t doubled = firstChunk << std::min<std::size_t>(chunks_.size(), 6);
    const std::size_t bytes = std::max(size, std::min(doubled, largestChunk));
    const std::size_t lines = (bytes + sizeof(Line) - 1) / sizeof(Line);
    chunks_.push_back(std::make_unique_for_overwrite<Line[]>(lines));
    rest = {chunks_.back()[0].bytes, lines * sizeof(Line)};
  }
  void* const block = rest.next;
  rest.next += size;
  rest.size -= size;
  return block;
}

}  // namespace orb::zero
