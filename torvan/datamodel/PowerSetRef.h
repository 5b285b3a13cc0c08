#pragma once

#include <cstdint>

#include <orb/zero/Model.h>
#include <torvan/datamodel/BitSet.h>
#include <torvan/datamodel/LatticeValue.h>

namespace torvan::datamodel {

/// A range of the bits of one power set, from 1 and inclusive. It does not own the bits and is
/// valid while the power set lives. The arithmetic of the range is 16-bit unsigned.
class TORVAN_DATAMODEL_API PowerSetRef {
 public:
  /// Refers to bits start to end; `model` is where `deref` makes its results.
  PowerSetRef(BitSet* bits, std::uint16_t start, std::uint16_t end, orb::zero::Model model);

  BitSet* getBits() const noexcept { return bits_; }
  std::uint16_t getStart() const noexcept { return start_; }
  std::uint16_t getEnd() const noexcept { return end_; }
  const orb::zero::Model& getModel() const noexcept { return model_; }

  /// A part of the range, counted from 1 within it. Not checked against the range.
  PowerSetRef ref(std::uint16_t start, std::uint16_t end) const;
  /// Overwrites the range with the first bits of the value, which must be a `PowerSet` (of the same
  /// bits even) and reads as 0 beyond its length. Nothing outside of the range and of the bit set
  /// is written, and nothing at all when the range ends before it starts.
  void assign(const LatticeValue& value);
  /// A new power set of an anonymous type with the bits of the range (see `PowerSet`).
  LatticeValue deref() const;

  /// The model is not compared.
  friend bool operator==(const PowerSetRef& a, const PowerSetRef& b) noexcept {
    return a.bits_ == b.bits_ && a.start_ == b.start_ && a.end_ == b.end_;
  }

 private:
  BitSet* bits_;
  std::uint16_t start_;
  std::uint16_t end_;
  orb::zero::Model model_;
};

}  // namespace torvan::datamodel
