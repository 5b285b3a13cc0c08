#pragma once

#include <cstddef>
#include <string>

#include <orb/zero/Visitor.h>
#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/Conditional.h>
#include <torvan/datamodel/Equation.h>
#include <torvan/datamodel/IndexRef.h>
#include <torvan/datamodel/Join.h>
#include <torvan/datamodel/Meet.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/Prune.h>
#include <torvan/datamodel/Struct.h>
#include <torvan/datamodel/StructRef.h>
#include <torvan/datamodel/Variable.h>

namespace torvan::datamodel {

/// Renders an equation, an expression or a value as one line of text: `dispatch(element)`. What has
/// no text, such as an empty handle or an element of another class, is the empty text.
///
///     Variable     its name                   Conditional  Conditional(ctrlExpr: c,t,f)
///     PowerSet     bits, highest first        Prune        prune(e,[a b ])
///     Struct       Struct(a : v,b : v)        StructRef    StructRef(e,'f')
///     Array        Array(1 : v,2 : v)         IndexRef     IndexRef(e,2 : 3)
///     Join, Meet   Join(a,b)                  Equation     lhs = rhs
///
/// A list without items has no opening parenthesis: "Join)". Nesting of any depth is written
/// without recursion, in time proportional to the text; what contains itself, or shares parts so
/// often that the walk as good as never ends, raises "CyclicValue".
/// A printer does not change; it may be used often. A function that a derived printer adds for a
/// class of its own counts for the parts of what is printed as well; such functions may call each
/// other through `dispatch` a thousand levels deep. They must not end elements.
class TORVAN_DATAMODEL_API PrettyPrinter : public orb::zero::Visitor<std::string> {
 public:
  PrettyPrinter();

  /// The text of an element, or its first so many bytes, whole characters only, and "..." when it
  /// is longer. What contains itself is such a text.
  static std::string excerpt(const ModelElement& element, std::size_t most);

  std::string dispatch(const ModelElement& element) const;

  /// The text of that class, also for an element of one derived from it.
  std::string visit(const Variable& variable) const;
  std::string visit(const Join& join) const;
  std::string visit(const Meet& meet) const;
  std::string visit(const StructRef& ref) const;
  std::string visit(const IndexRef& ref) const;
  std::string visit(const Conditional& conditional) const;
  std::string visit(const Prune& prune) const;
  std::string visit(const PowerSet& set) const;
  std::string visit(const Array& array) const;
  std::string visit(const Struct& record) const;
  std::string visit(const Equation& equation) const;

 private:
  using Classes = orb::zero::meta::ClassList<Variable, Join, Meet, StructRef, IndexRef, Conditional,
                                             Prune, PowerSet, Array, Struct, Equation>;
  class Line;
};

}  // namespace torvan::datamodel
