#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <boost/variant/variant.hpp>

#include <torvan/datamodel/LatticeValue.h>
#include <torvan/datamodel/PowerSetRef.h>

namespace torvan::datamodel {

/// A place inside lattice values that can be read, compared, written, merged into and narrowed. It
/// is one of three: the slot of a value, a range of bits of a power set, or the slots of a range of
/// array elements. A `Ref` is copied freely and owns nothing: it is valid while the slots and bit
/// sets that it points into live (they stay where they are through insertions and undo).
///
/// Writes are plain assignments: they are not checked, not undone and not announced. A written slot
/// shares the value's element, which has to belong to the slot's model: a slot keeps no other
/// model. To destroy such an element takes a look at the whole model; `Model::reclaim` does not.
class TORVAN_DATAMODEL_API Ref {
 public:
  /// An update step: brings the incoming value into the place and tells whether that changed it.
  using UpdateFunction = std::function<bool(Ref&, const LatticeValue&)>;

  Ref(LatticeValue* const& slot);
  Ref(const PowerSetRef& bits);
  Ref(const std::vector<LatticeValue*>& slots);

  /// What the reference is made of; asking for another alternative than it holds ends the process.
  LatticeValue* getLatticeValuePtr() const;
  PowerSetRef getPowerSetRef() const;
  std::vector<LatticeValue*> getLatticeValuePtrVec() const;

  /// Writes the value into the place: into a slot the handle, into a range of bits the first bits
  /// of the value, which must be a `PowerSet`, into a range of slots the elements of the value,
  /// which must be an `Array`, in ascending order of their indices. Of slots and elements, what one
  /// side has more of is left alone.
  void assign(const LatticeValue& value);
  /// Calls the update step for the place, or for every slot of a range with the element of the
  /// array that stands for it; returns whether any step changed something.
  bool update(const LatticeValue& value, const UpdateFunction& step);
  /// Whether what the place holds equals the value. An empty slot raises
  /// "CannotCastIncompatibleTypes".
  bool eq(const LatticeValue& value);
  /// What the place holds: the slot's value itself (may be empty), a new power set with the bits of
  /// the range; for a range of slots an empty handle.
  LatticeValue deref();

  /// The place of a field of the record that the place holds. An empty slot first receives a clone
  /// of `prototype`, which has to be of the slot's model. On a range of slots this narrows the
  /// receiver as well, to the same slots as the result. On a range of bits the result refers to
  /// nothing: it reads as empty and is never written.
  Ref ref(const std::string& fieldName, const LatticeValue& prototype);
  /// The place of a range of the parts that the place holds: of a range of bits, its bits start to
  /// end; of a slot, the range of its value, an empty slot first receiving a clone of `prototype`
  /// as above; of a range of slots, its slots start to end. Counted from 1, inclusive; but for a
  /// range of bits, an end of 0 stands for the single part at the start.
  Ref ref(std::uint16_t start, std::uint16_t end, const LatticeValue& prototype);

  /// Equal when they refer to the same place.
  friend bool operator==(const Ref& a, const Ref& b) { return a.place_ == b.place_; }

 private:
  using Slots = std::vector<LatticeValue*>;

  boost::variant<LatticeValue*, PowerSetRef, Slots> place_;
};

inline Ref IndexableValue::ref(std::uint16_t start, std::uint16_t end) const {
  return (*this)->ref(start, end);
}
inline Ref Struct::ref(const std::string& name) const { return (*this)->ref(name); }

}  // namespace torvan::datamodel
