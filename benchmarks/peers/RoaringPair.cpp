#include <roaring/roaring.h>

#include <memory>

#include "benchmarks/SetPair.h"

namespace torvan::datamodel::benchmarks {
namespace {

class RoaringSet {
 public:
  RoaringSet(const Words& words, std::size_t)
      : bits_(roaring_bitmap_create(), roaring_bitmap_free) {
    forEachBit(words, [&](std::size_t bit) {
      roaring_bitmap_add(bits_.get(), static_cast<std::uint32_t>(bit));
    });
    roaring_bitmap_run_optimize(bits_.get());
  }
  RoaringSet join(const RoaringSet& other) const {
    return RoaringSet(roaring_bitmap_or(bits_.get(), other.bits_.get()));
  }
  RoaringSet meet(const RoaringSet& other) const {
    return RoaringSet(roaring_bitmap_and(bits_.get(), other.bits_.get()));
  }
  boolean3 le(const RoaringSet& other) const {
    return comparison(roaring_bitmap_is_subset(bits_.get(), other.bits_.get()),
                      roaring_bitmap_is_subset(other.bits_.get(), bits_.get()));
  }
  bool eq(const RoaringSet& other) const {
    return roaring_bitmap_equals(bits_.get(), other.bits_.get());
  }
  template <class Use>
  void forEach(Use use) const {
    roaring_uint32_iterator_t next;
    for (roaring_init_iterator(bits_.get(), &next); next.has_value;
         roaring_advance_uint32_iterator(&next))
      use(next.current_value);
  }

 private:
  explicit RoaringSet(roaring_bitmap_t* bits) : bits_(bits, roaring_bitmap_free) {}

  std::unique_ptr<roaring_bitmap_t, void (*)(const roaring_bitmap_t*)> bits_;
};

}  // namespace

std::unique_ptr<SetPair> makeRoaringPair(const Operands& sets) {
  return makePair<RoaringSet>(sets);
}

}  // namespace torvan::datamodel::benchmarks
