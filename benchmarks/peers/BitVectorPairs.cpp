#include <llvm/ADT/BitVector.h>
#include <llvm/ADT/SparseBitVector.h>

#include <memory>

#include "benchmarks/SetPair.h"

namespace torvan::datamodel::benchmarks {
namespace {

bool isBelow(const llvm::BitVector& a, const llvm::BitVector& b) { return !a.test(b); }
bool isBelow(const llvm::SparseBitVector<>& a, const llvm::SparseBitVector<>& b) {
  return b.contains(a);
}

template <class Bits>
class BitVectorSet {
 public:
  BitVectorSet(const Words& words, std::size_t size) {
    if constexpr (requires { bits_.resize(0); }) bits_.resize(static_cast<unsigned>(size));
    forEachBit(words, [&](std::size_t bit) { bits_.set(static_cast<unsigned>(bit)); });
  }
  BitVectorSet join(const BitVectorSet& other) const {
    BitVectorSet result = *this;
    result.bits_ |= other.bits_;
    return result;
  }
  BitVectorSet meet(const BitVectorSet& other) const {
    BitVectorSet result = *this;
    result.bits_ &= other.bits_;
    return result;
  }
  boolean3 le(const BitVectorSet& other) const {
    return comparison(isBelow(bits_, other.bits_), isBelow(other.bits_, bits_));
  }
  bool eq(const BitVectorSet& other) const { return bits_ == other.bits_; }
  template <class Use>
  void forEach(Use use) const {
    if constexpr (requires { bits_.set_bits(); })
      for (const unsigned bit : bits_.set_bits()) use(bit);
    else
      for (const unsigned bit : bits_) use(bit);
  }

 private:
  Bits bits_;
};

}  // namespace

std::unique_ptr<SetPair> makeBitVectorPair(const Operands& sets) {
  return makePair<BitVectorSet<llvm::BitVector>>(sets);
}
std::unique_ptr<SetPair> makeSparseBitVectorPair(const Operands& sets) {
  return makePair<BitVectorSet<llvm::SparseBitVector<>>>(sets);
}

}  // namespace torvan::datamodel::benchmarks
