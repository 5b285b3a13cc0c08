#include <boost/dynamic_bitset.hpp>
#include <memory>

#include "benchmarks/SetPair.h"

namespace torvan::datamodel::benchmarks {
namespace {

class BoostSet {
 public:
  BoostSet(const Words& words, std::size_t size) : bits_(words.begin(), words.end()) {
    bits_.resize(size);
  }
  BoostSet join(const BoostSet& other) const {
    BoostSet result = *this;
    result.bits_ |= other.bits_;
    return result;
  }
  BoostSet meet(const BoostSet& other) const {
    BoostSet result = *this;
    result.bits_ &= other.bits_;
    return result;
  }
  boolean3 le(const BoostSet& other) const {
    return comparison(bits_.is_subset_of(other.bits_), other.bits_.is_subset_of(bits_));
  }
  bool eq(const BoostSet& other) const { return bits_ == other.bits_; }
  template <class Use>
  void forEach(Use use) const {
    for (auto bit = bits_.find_first(); bit != bits_.npos; bit = bits_.find_next(bit)) use(bit);
  }

 private:
  boost::dynamic_bitset<std::uint64_t> bits_;
};

}  // namespace

/// The only thing that one of the builds of this file shows: TORVAN_ALIGNMENT tells them apart.
template <>
[[gnu::visibility("default")]] std::unique_ptr<SetPair> makeBoostPair<TORVAN_ALIGNMENT>(
    const Operands& sets) {
  return makePair<BoostSet>(sets);
}

}  // namespace torvan::datamodel::benchmarks
