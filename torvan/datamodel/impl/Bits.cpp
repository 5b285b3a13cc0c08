#include <torvan/datamodel/impl/Bits.h>

#include <algorithm>
#include <utility>

#include <orb/zero/ElementPool.h>

namespace torvan::datamodel {
namespace {

// The words of a `BitSet` can only be copied out one by one; this reads them where they are.
template <auto member>
struct Opened {
  friend auto& blocksOf(const BitSet& bits) { return bits.*member; }
};
auto& blocksOf(const BitSet& bits);
template struct Opened<&BitSet::m_bits>;

}  // namespace

inline void Bits::makeBlock(std::size_t size, orb::zero::ElementPool& pool) {
  const std::size_t count = wordsFor(size);
  block_ = static_cast<Word*>(pool.allocate(blockSize(count)));
  size_ = static_cast<std::uint32_t>(size);
  new (block_ + count) BlockEnd{&pool, 1};
}

inline void Bits::keep(BitSet* bits) noexcept {
  stored_ = bits;
  size_ = sizeOfStored;
}

Bits::Bits(const BitSet& bits) : Bits(BitSet(bits)) {}

Bits::Bits(BitSet&& bits) : Bits() {
  if (bits.num_blocks() > Short::count) {
    keep(new BitSet(std::move(bits)));
  } else {
    size_ = static_cast<std::uint32_t>(bits.size());
    to_block_range(bits, short_.words());
  }
}

Bits& Bits::operator=(Bits&& other) {  // NOLINT(performance-noexcept-move-constructor)
  if (isStored())
    other.isStored() ? stored_->swap(*other.stored_) : other.copy().swap(*stored_);
  else
    swap(other);
  return *this;
}

void Bits::swap(Bits& other) noexcept {
  std::swap(short_, other.short_);
  std::swap(size_, other.size_);
}

void Bits::release() noexcept {
  if (isStored())
    delete stored_;
  else if (--blockEnd().users == 0)
    blockEnd().pool->deallocate(block_, blockSize(wordCount()));
}

const Bits::Word* Bits::storedWords() const noexcept { return blocksOf(*stored_).data(); }

BitSet Bits::copy() const {
  if (isStored()) return *stored_;
  BitSet bits(words(), words() + wordCount());
  bits.resize(size_);
  return bits;
}

BitSet& Bits::stored() {
  if (!isStored()) {
    auto* const made = new BitSet(copy());
    if (!isShort()) release();
    keep(made);
  }
  return *stored_;
}

/// Room for bits of this size.
Bits::Word* Bits::allocate(std::size_t size, orb::zero::ElementPool& pool) {
  if (wordsFor(size) > Short::count) return makeBlock(size, pool), block_;
  size_ = static_cast<std::uint32_t>(size);
  return short_.words();
}

void Bits::assignBlock(const Bits& other, orb::zero::ElementPool& pool) {
  if (!other.isStored() && other.blockEnd().pool == &pool) {
    block_ = other.block_;
    size_ = other.size_;
    ++blockEnd().users;
  } else {
    std::copy_n(other.words(), other.wordCount(), allocate(other.size(), pool));
  }
}

void Bits::assign(const BitSet& bits, orb::zero::ElementPool& pool) {
  to_block_range(bits, allocate(bits.size(), pool));
}

/// Where one set is in the other, the result is one of the two and can share its block.
template <Bits::Operation operation>
void Bits::combineBlocks(const Bits& a, const Bits& b, orb::zero::ElementPool& pool) {
  constexpr bool isJoin = operation == Operation::Join;
  constexpr auto combineWords = isJoin ? words::join : words::meet;
  const bool areApart = a.size() > 0 && b.size() > 0 && words::beginApart(a.words(), b.words());
  if (a.size() == b.size() && !areApart) {
    const boolean3 order = a.compare(b);
    if (order != boolean3::NA) return assign((order == boolean3::T) == isJoin ? b : a, pool);
  }
  if (a.hasBlockLike(b)) {
    makeBlock(a.size_, pool);
    return combineWords(block_, a.block_, b.block_, wordsFor(size_));
  }
  const std::size_t size = a.size(), count = a.wordCount(), common = std::min(count, b.wordCount());
  Word* const to = allocate(size, pool);
  combineWords(to, a.words(), b.words(), common);
  for (std::size_t i = common; i < count; ++i) to[i] = isJoin ? a.words()[i] : 0;
  if (const std::size_t rest = size % wordBits) to[count - 1] &= (Word{1} << rest) - 1;
}

template void Bits::combineBlocks<Bits::Operation::Join>(const Bits&, const Bits&,
                                                         orb::zero::ElementPool&);
template void Bits::combineBlocks<Bits::Operation::Meet>(const Bits&, const Bits&,
                                                         orb::zero::ElementPool&);

/// The words that one of them lacks are compared with none.
boolean3 Bits::compareWords(const Bits& other) const noexcept {
  const Word *const mine = words(), *const others = other.words();
  const std::size_t common = std::min(wordCount(), other.wordCount());
  if (mine == others) return boolean3::T;
  const auto isRestEmpty = [common](const Bits& bits) {
    return std::all_of(bits.words() + common, bits.words() + bits.wordCount(),
                       [](Word word) { return word == 0; });
  };
  if (isRestEmpty(*this) && words::isSubset(mine, others, common)) return boolean3::T;
  const bool isAbove = isRestEmpty(other) && words::isSubset(others, mine, common);
  return isAbove ? boolean3::F : boolean3::NA;
}

bool Bits::hasEqualWords(const Bits& other) const noexcept {
  return size() == other.size() && std::equal(words(), words() + wordCount(), other.words());
}

}  // namespace torvan::datamodel
