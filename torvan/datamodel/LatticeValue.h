#include <torvan/datamodel/Term.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_LATTICEVALUE_H
#define TORVAN_DATAMODEL_LATTICEVALUE_H

#include <torvan/datamodel/Api.h>
#include <torvan/datamodel/boolean3.h>

namespace torvan::datamodel {

/// A value of a lattice type. Abstract.
///
/// The operations are those of the lattice: for values of one type, `a.join(b)` is the least value
/// above both and `a.meet(b)` the greatest one below both; join and meet are commutative,
/// associative and idempotent, and each absorbs the other: `a.join(a.meet(b))` equals `a`.
///
/// The left operand's type drives every operation. Results of `join`, `meet` and `clone` are new
/// elements in the model of the left operand; they have its type and share nothing with the
/// operands. The right operand is taken as a value of the left one's kind; another kind, or an
/// empty handle, raises "CannotCastIncompatibleTypes". It may belong to another model. A value that
/// contains itself raises "CyclicValue". When an operation raises, it has made nothing.
///
/// A value that nobody holds stays in the model until `Model::reclaim` is called.
class TORVAN_DATAMODEL_API LatticeValue : public orb::zero::Handle<LatticeValue, Term> {
 public:
  class Impl;
  using Handle::Handle;

  /// The least upper bound, as a new value.
  LatticeValue join(const LatticeValue& other) const;
  /// The greatest lower bound, as a new value.
  LatticeValue meet(const LatticeValue& other) const;
  /// The order: T when this value is below or equal to the other, F when it is strictly above, NA
  /// when they cannot be compared. A composite value is T when all its parts are, F when all its
  /// parts are, and NA otherwise, even where the parts that answer T are equal.
  boolean3 le(const LatticeValue& other) const;
  /// Whether the values are equal, part by part.
  bool eq(const LatticeValue& other) const;
  /// A new value equal to this one.
  LatticeValue clone() const;
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_LATTICEVALUE_H
