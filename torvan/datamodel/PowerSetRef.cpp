#include <torvan/datamodel/PowerSetRef.h>

#include <algorithm>
#include <utility>

#include <torvan/datamodel/PowerSet.h>

namespace torvan::datamodel {

PowerSetRef::PowerSetRef(BitSet* bits, std::uint16_t start, std::uint16_t end,
                         orb::zero::Model model)
    : bits_(bits), start_(start), end_(end), model_(std::move(model)) {}

PowerSetRef PowerSetRef::ref(std::uint16_t start, std::uint16_t end) const {
  return {bits_, static_cast<std::uint16_t>(start_ + start - 1),
          static_cast<std::uint16_t>(start_ + end - 1), model_};
}

void PowerSetRef::assign(const LatticeValue& value) {
  const BitSet source = PowerSet(value)->bits().copy();  // a copy: it may be the very set
  const std::size_t first = static_cast<std::uint16_t>(start_ - 1);
  const std::size_t last = std::min<std::size_t>(end_, bits_->size());
  for (std::size_t bit = first; bit < last; ++bit)
    bits_->set(bit, bit - first < source.size() && source[bit - first]);
}

LatticeValue PowerSetRef::deref() const {
  const orb::zero::Batch batch(model_);
  PowerSet::Builder whole(model_);
  whole->basicSetValue(*bits_);
  return whole.create().at(start_, end_);
}

}  // namespace torvan::datamodel
