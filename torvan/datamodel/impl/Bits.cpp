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

Bits::Block* Bits::Block::make(std::size_t count, orb::zero::ElementPool& pool) {
  void* const memory = pool.allocate(sizeof(Block) + count * sizeof(Word));
  return new (memory) Block{&pool, static_cast<std::uint32_t>(count)};
}

Bits::Bits(const BitSet& bits) : Bits(BitSet(bits)) {}

Bits::Bits(BitSet&& bits) : Bits() {
  if (bits.num_blocks() > wordsInside) {
    stored_ = new BitSet(std::move(bits));
    form_ = Form::Stored;
  } else {
    size_ = static_cast<std::uint32_t>(bits.size());
    to_block_range(bits, words_);
  }
}

Bits& Bits::operator=(Bits&& other) {
  if (form_ == Form::Stored)
    other.form_ == Form::Stored ? stored_->swap(*other.stored_) : other.copy().swap(*stored_);
  else
    swap(other);
  return *this;
}

void Bits::swap(Bits& other) noexcept {
  std::swap_ranges(words_, words_ + wordsInside, other.words_);
  std::swap(size_, other.size_);
  std::swap(form_, other.form_);
}

void Bits::release() noexcept {
  if (form_ == Form::Stored)
    delete stored_;
  else if (--shared_->users == 0)
    shared_->pool->deallocate(shared_, sizeof(Block) + shared_->count * sizeof(Word));
}

const Bits::Word* Bits::storedWords() const noexcept { return blocksOf(*stored_).data(); }

BitSet Bits::copy() const {
  if (form_ == Form::Stored) return *stored_;
  BitSet bits(words(), words() + count());
  bits.resize(size_);
  return bits;
}

BitSet& Bits::stored() {
  if (form_ != Form::Stored) {
    auto* const made = new BitSet(copy());
    if (form_ != Form::Inside) release();
    stored_ = made;
    form_ = Form::Stored;
  }
  return *stored_;
}

/// Room for bits of this size.
Bits::Word* Bits::allocate(std::size_t size, orb::zero::ElementPool& pool) {
  if (countFor(size) > wordsInside) {
    shared_ = Block::make(countFor(size), pool);
    form_ = Form::Shared;
  }
  size_ = static_cast<std::uint32_t>(size);
  return form_ == Form::Inside ? words_ : shared_->words();
}

void Bits::assign(const Bits& other, orb::zero::ElementPool& pool) {
  if (other.form_ == Form::Shared && other.shared_->pool == &pool) {
    shared_ = other.shared_;
    ++shared_->users;
    size_ = other.size_;
    form_ = Form::Shared;
  } else {
    std::copy_n(other.words(), other.count(), allocate(other.size(), pool));
  }
}

void Bits::assign(const BitSet& bits, orb::zero::ElementPool& pool) {
  to_block_range(bits, allocate(bits.size(), pool));
}

/// Where one set is in the other, the result is one of the two and can share its block.
void Bits::combineBlocks(const Bits& a, const Bits& b, orb::zero::ElementPool& pool,
                         Operation operation) {
  const bool isJoin = operation == Operation::Join;
  const std::size_t size = a.size(), count = a.count();
  if (size == b.size()) {
    const Bits &smaller = isJoin ? b : a, &larger = isJoin ? a : b;
    if (smaller.isSubsetOf(larger)) return assign(a, pool);
    if (larger.isSubsetOf(smaller)) return assign(b, pool);
  }
  Word* const to = allocate(size, pool);
  const std::size_t common = std::min(count, b.count());
  (isJoin ? words::join : words::meet)(to, a.words(), b.words(), common);
  for (std::size_t i = common; i < count; ++i) to[i] = isJoin ? a.words()[i] : 0;
  if (const std::size_t rest = size % wordBits) to[count - 1] &= (Word{1} << rest) - 1;
}

bool Bits::isSubsetOfOther(const Bits& other) const noexcept {
  const Word *const mine = words(), *const others = other.words();
  const std::size_t count = this->count(), common = std::min(count, other.count());
  if (mine == others) return true;
  return words::isSubset(mine, others, common) &&
         std::all_of(mine + common, mine + count, [](Word word) { return word == 0; });
}

}  // namespace torvan::datamodel
