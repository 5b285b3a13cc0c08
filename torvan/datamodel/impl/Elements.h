#pragma once

// Makes `->` work for a user who includes the header of a single class: all handles come first, as
// the Impls name each other's handles, then the Impls. Every handle's header ends by including this
// file. It names its base before its own guard, since on the way there this file may bring the very
// handle whose header it started from.

#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/ArrayElem.h>
#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/Conditional.h>
#include <torvan/datamodel/Equation.h>
#include <torvan/datamodel/Expression.h>
#include <torvan/datamodel/FieldElem.h>
#include <torvan/datamodel/FieldType.h>
#include <torvan/datamodel/IndexRef.h>
#include <torvan/datamodel/IndexableValue.h>
#include <torvan/datamodel/Join.h>
#include <torvan/datamodel/LExpression.h>
#include <torvan/datamodel/LatticeType.h>
#include <torvan/datamodel/LatticeValue.h>
#include <torvan/datamodel/Meet.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/PowerSetType.h>
#include <torvan/datamodel/Prune.h>
#include <torvan/datamodel/Struct.h>
#include <torvan/datamodel/StructRef.h>
#include <torvan/datamodel/StructType.h>
#include <torvan/datamodel/System.h>
#include <torvan/datamodel/Term.h>
#include <torvan/datamodel/Variable.h>

#include <torvan/datamodel/impl/ArrayElemImpl.h>
#include <torvan/datamodel/impl/ArrayImpl.h>
#include <torvan/datamodel/impl/ArrayTypeImpl.h>
#include <torvan/datamodel/impl/ConditionalImpl.h>
#include <torvan/datamodel/impl/EquationImpl.h>
#include <torvan/datamodel/impl/ExpressionImpl.h>
#include <torvan/datamodel/impl/FieldElemImpl.h>
#include <torvan/datamodel/impl/FieldTypeImpl.h>
#include <torvan/datamodel/impl/IndexRefImpl.h>
#include <torvan/datamodel/impl/IndexableValueImpl.h>
#include <torvan/datamodel/impl/JoinImpl.h>
#include <torvan/datamodel/impl/LExpressionImpl.h>
#include <torvan/datamodel/impl/LatticeTypeImpl.h>
#include <torvan/datamodel/impl/LatticeValueImpl.h>
#include <torvan/datamodel/impl/MeetImpl.h>
#include <torvan/datamodel/impl/PowerSetImpl.h>
#include <torvan/datamodel/impl/PowerSetTypeImpl.h>
#include <torvan/datamodel/impl/PruneImpl.h>
#include <torvan/datamodel/impl/StructImpl.h>
#include <torvan/datamodel/impl/StructRefImpl.h>
#include <torvan/datamodel/impl/StructTypeImpl.h>
#include <torvan/datamodel/impl/SystemImpl.h>
#include <torvan/datamodel/impl/TermImpl.h>
#include <torvan/datamodel/impl/VariableImpl.h>

namespace torvan::datamodel {

// The operations of the handles, which go through the element's virtual ones; power sets, which are
// most of the values, are compared without a call.

inline bool LatticeType::isCompatible(const LatticeType& other) const {
  return (*this)->isCompatible(other);
}
inline LatticeType StructType::at(const std::string& name) const { return (*this)->at(name); }

inline LatticeValue LatticeValue::join(const LatticeValue& other) const {
  return (*this)->join(other);
}
inline LatticeValue LatticeValue::meet(const LatticeValue& other) const {
  return (*this)->meet(other);
}
inline boolean3 LatticeValue::le(const LatticeValue& other) const {
  if (const auto* const set = PowerSet::exactImplOf(*this))
    if (const auto* const more = PowerSet::exactImplOf(other))
      return set->bits().compare(more->bits());
  return (*this)->le(other);
}
inline bool LatticeValue::eq(const LatticeValue& other) const {
  if (const auto* const set = PowerSet::exactImplOf(*this))
    if (const auto* const same = PowerSet::exactImplOf(other)) return set->bits() == same->bits();
  return (*this)->eq(other);
}
inline LatticeValue LatticeValue::clone() const { return (*this)->clone(); }

inline LatticeValue IndexableValue::at(std::uint16_t start, std::uint16_t end) const {
  return (*this)->at(start, end);
}
inline LatticeValue Struct::at(const std::string& name) const { return (*this)->at(name); }
inline Struct Struct::prune(const std::vector<std::string>& path) const {
  return (*this)->prune(path);
}
inline LatticeValue* FieldElem::ref() const { return (*this)->ref(); }
inline LatticeValue* ArrayElem::ref() const { return (*this)->ref(); }

inline std::string Equation::print() const { return (*this)->print(); }
inline Variable Equation::getLhsVariable() const { return (*this)->getLhsVariable(); }
inline std::vector<Variable> Equation::getRhsVariables() const {
  return (*this)->getRhsVariables();
}

}  // namespace torvan::datamodel
