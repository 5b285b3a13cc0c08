#pragma once

#include <span>

#include <orb/zero/meta/ClassList.h>
#include <torvan/datamodel/Array.h>

namespace torvan::datamodel {

using meta::ClassList;

/// The classes of the package, in the order of their names. Whatever goes over all classes starts
/// from this list.
using ModelClasses =
    ClassList<Array, ArrayElem, ArrayType, Conditional, Equation, Expression, FieldElem, FieldType,
              IndexRef, IndexableValue, Join, LExpression, LatticeType, LatticeValue, Meet,
              PowerSet, PowerSetType, Prune, Struct, StructRef, StructType, System, Term, Variable>;

/// The same at run time.
TORVAN_DATAMODEL_API std::span<const meta::ClassInfo* const> modelClasses();

}  // namespace torvan::datamodel
