#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include <torvan/datamodel/Api.h>
#include <torvan/datamodel/BitSet.h>
#include <torvan/datamodel/boolean3.h>
#include <torvan/datamodel/impl/Words.h>

namespace orb::zero {
class ElementPool;
}

namespace torvan::datamodel {

/// The bits of a power set, in the cheapest of three forms: a few words are inside; more words,
/// the result of an operation, are in a block that never changes and that sets share; and from when
/// on somebody asks for the `BitSet`, it is that one, at its address for good.
class TORVAN_DATAMODEL_API Bits {
 public:
  using Stored = BitSet;
  using Word = words::Word;
  static_assert(std::is_same_v<Word, BitSet::block_type>);

  /// The words of bits that are few enough for room of their own; what is beyond the size is 0.
  /// In pairs, as the compiler would write single words and read pairs, which stalls.
  struct Short {
    using Pair [[gnu::vector_size(16), gnu::aligned(8)]] = Word;
    static constexpr std::size_t count = 4;
    Pair low, high;

    Word first() const noexcept { return low[0]; }
    Word* words() noexcept { return reinterpret_cast<Word*>(this); }
    const Word* words() const noexcept { return reinterpret_cast<const Word*>(this); }
    Short& operator|=(const Short& more) noexcept {
      low |= more.low;
      high |= more.high;
      return *this;
    }
    Short& operator&=(const Short& other) noexcept {
      low &= other.low;
      high &= other.high;
      return *this;
    }
    bool isSubsetOf(const Short& other) const noexcept {
      return isZero((low & ~other.low) | (high & ~other.high));
    }
    friend bool operator==(const Short& a, const Short& b) noexcept {
      return isZero((a.low ^ b.low) | (a.high ^ b.high));
    }

   private:
    static bool isZero(const Pair& pair) noexcept { return (pair[0] | pair[1]) == 0; }
  };

  Bits() noexcept : short_{} {}
  Bits(const BitSet& bits);
  Bits(BitSet&& bits);
  Bits(Bits&& other) noexcept : Bits() { swap(other); }
  /// Keeps the `BitSet` that somebody asked for, and gives it the other bits; may take memory.
  Bits& operator=(Bits&& other);  // NOLINT(performance-noexcept-move-constructor)
  ~Bits() {
    if (!isShort()) [[unlikely]]
      release();
  }

  /// In bits.
  std::size_t size() const noexcept { return isStored() ? stored_->size() : size_; }
  std::size_t wordCount() const noexcept { return wordsFor(size()); }
  const Word* words() const noexcept {
    return isShort() ? short_.words() : isStored() ? storedWords() : block_;
  }
  bool operator[](std::size_t bit) const noexcept {
    return words()[bit / wordBits] >> bit % wordBits & 1;
  }
  BitSet copy() const;
  BitSet& stored();
  const BitSet& stored() const { return const_cast<Bits*>(this)->stored(); }

  /// Whether they are in no other room.
  bool isShort() const noexcept { return size_ <= Short::count * wordBits; }
  const Short& shortWords() const noexcept { return short_; }
  /// Fills bits that are empty.
  void setShort(const Short& words, std::size_t size) noexcept {
    short_ = words;
    size_ = static_cast<std::uint32_t>(size);
  }

  // The other operand is taken at the length of the first. All but `add` fill bits that are empty.
  // Blocks come from the pool, which has to live as long.
  void join(const Bits& a, const Bits& b, orb::zero::ElementPool& pool) {
    combine<Operation::Join>(a, b, pool);
  }
  void meet(const Bits& a, const Bits& b, orb::zero::ElementPool& pool) {
    combine<Operation::Meet>(a, b, pool);
  }
  /// Adds the other bits, as far as these reach.
  void add(const Bits& more, orb::zero::ElementPool& pool) {
    if (isShortAs(more)) {
      short_ |= more.short_;
    } else {
      Bits joined;
      joined.join(*this, more, pool);
      *this = std::move(joined);
    }
  }
  void assign(const Bits& other, orb::zero::ElementPool& pool) {
    other.isShort() ? setShort(other.short_, other.size_) : assignBlock(other, pool);
  }
  void assign(const BitSet& bits, orb::zero::ElementPool& pool);

  /// How it lies to the other in the order of inclusion; bits that one of them lacks read as 0.
  boolean3 compare(const Bits& other) const noexcept {
    if (size_ != other.size_) return compareWords(other);
    if (size_ <= wordBits) [[likely]] {
      const Word mine = short_.first(), others = other.short_.first();
      return (mine & ~others) == 0   ? boolean3::T
             : (others & ~mine) == 0 ? boolean3::F
                                     : boolean3::NA;
    }
    if (isShort())
      return short_.isSubsetOf(other.short_)   ? boolean3::T
             : other.short_.isSubsetOf(short_) ? boolean3::F
                                               : boolean3::NA;
    if (isStored()) return compareWords(other);
    return words::compare(block_, other.block_, wordsFor(size_));
  }
  bool isSubsetOf(const Bits& other) const noexcept { return compare(other) == boolean3::T; }
  friend bool operator==(const Bits& a, const Bits& b) noexcept {
    if (a.hasBlockLike(b)) [[likely]]
      return words::isEqual(a.block_, b.block_, wordsFor(a.size_));
    if (a.size_ != b.size_) return a.hasEqualWords(b);
    if (a.size_ <= wordBits) return a.short_.first() == b.short_.first();
    return a.isShort() ? a.short_ == b.short_ : a.hasEqualWords(b);
  }

 private:
  enum class Operation : bool { Join, Meet };
  static constexpr std::size_t wordBits = 64;
  static constexpr std::uint32_t sizeOfStored = UINT32_MAX;
  static constexpr std::size_t wordsFor(std::size_t size) noexcept {
    return (size + wordBits - 1) / wordBits;
  }

  /// Behind the words of a block, which so begin where loads are fastest.
  struct BlockEnd {
    orb::zero::ElementPool* pool;
    std::size_t users;
  };
  /// In bytes.
  static constexpr std::size_t blockSize(std::size_t count) noexcept {
    return count * sizeof(Word) + sizeof(BlockEnd);
  }

  bool isStored() const noexcept { return size_ == sizeOfStored; }
  bool isShortAs(const Bits& other) const noexcept { return isShort() && size_ == other.size_; }
  /// Both have blocks, of one size: what a comparison tells first, and by one branch. With a sign,
  /// the size of what is stored is less than any.
  bool hasBlockLike(const Bits& other) const noexcept {
    constexpr std::int32_t longest = Short::count * wordBits;
    return (int{static_cast<std::int32_t>(size_) > longest} & int{size_ == other.size_}) != 0;
  }
  boolean3 compareWords(const Bits& other) const noexcept;
  bool hasEqualWords(const Bits& other) const noexcept;
  template <Operation operation>
  void combine(const Bits& a, const Bits& b, orb::zero::ElementPool& pool) {
    if (a.isShortAs(b)) [[likely]] {
      setShort(a.short_, a.size_);
      operation == Operation::Join ? short_ |= b.short_ : short_ &= b.short_;
    } else {
      combineBlocks<operation>(a, b, pool);
    }
  }
  template <Operation operation>
  void combineBlocks(const Bits& a, const Bits& b, orb::zero::ElementPool& pool);
  void assignBlock(const Bits& other, orb::zero::ElementPool& pool);
  void makeBlock(std::size_t size, orb::zero::ElementPool& pool);
  void keep(BitSet* bits) noexcept;
  BlockEnd& blockEnd() const noexcept {
    return *reinterpret_cast<BlockEnd*>(block_ + wordsFor(size_));
  }
  Word* allocate(std::size_t size, orb::zero::ElementPool& pool);
  const Word* storedWords() const noexcept;
  void swap(Bits& other) noexcept;
  void release() noexcept;

  union {
    Short short_;
    Word* block_;
    BitSet* stored_;
  };
  // Tells the form, too: bits that fit are inside, and a `BitSet` has its own size.
  std::uint32_t size_ = 0;
};

}  // namespace torvan::datamodel
