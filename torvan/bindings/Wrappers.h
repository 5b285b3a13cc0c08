#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

#include <orb/zero/hb/ORB0WrapperInfo.h>
#include <torvan/bindings/Api.h>
#include <torvan/datamodel.h>
#include <torvan/datamodel/ModelClasses.h>

namespace torvan::datamodel::hb {

/// What the host's help says of each class.
struct About {
  std::string_view name, text;
};
inline constexpr About abouts[] = {
    {"Array", "An array value: its elements by index, from 1."},
    {"ArrayElem", "One stored element of an array: its index and its value."},
    {"ArrayType", "Arrays of values of one element type, with indices from 1."},
    {"Conditional", "One of two operands, as the control expression decides."},
    {"Equation", "States that the place `lhs` receives the value of `rhs`."},
    {"Expression", "A term that is evaluated."},
    {"FieldElem", "One stored field of a record: its name and its value."},
    {"FieldType", "One field of a record type: its name and the type of its values."},
    {"IndexRef", "A range of an array or of a power set, from 1 and inclusive."},
    {"IndexableValue", "A value whose parts are numbered from 1."},
    {"Join", "The join of its operands, in order."},
    {"LExpression", "An expression that can stand on the left side of an equation."},
    {"LatticeType", "A lattice: what values range over, with its least and its greatest value."},
    {"LatticeValue", "A value of a lattice type."},
    {"Meet", "The meet of its operands, in order."},
    {"PowerSet", "A set over the universe of its type."},
    {"PowerSetType", "The sets over a universe, ordered by inclusion."},
    {"Prune", "A record without the field that a path names."},
    {"Struct", "A record: its values by field name; fields that are not stored read as bottom."},
    {"StructRef", "The field of a record."},
    {"StructType", "Records with one value per named field, ordered field by field."},
    {"System", "The equations that an analysis solves, in order."},
    {"Term", "Anything that has a lattice type: expressions and values."},
    {"Variable", "An unknown of a system of equations."},
};

/// That of X; does not compile for a class without.
template <class X>
consteval std::string_view aboutOf() {
  constexpr std::string_view dotted = X::Impl::table.name;
  for (const auto& [name, text] : abouts)
    if (dotted.substr(dotted.rfind('.') + 1) == name) return text;
  throw "the class has no line in the list";
}

/// What it says of each property; nothing of one that the host does not have.
TORVAN_BINDINGS_API std::string_view propertyText(const Property& property);

/// The text of a term or an equation, cut when it is too long to be shown; none of what has none.
TORVAN_BINDINGS_API std::string printedForHost(const tyve::Value& object);

/// The host class of the model class X, with the operations that X offers to the host. What else it
/// has follows from the record of X, see `orb::zero::hb::WrapperInfo`.
template <class X>
class Wrapper final : public orb::zero::hb::ORB0WrapperInfo<X> {
  using Base = orb::zero::hb::ORB0WrapperInfo<X>;

 public:
  Wrapper() : Base(std::string(aboutOf<X>()), Base::Access::Full, primitives, &propertyText) {
    if constexpr (std::derived_from<X, IndexableValue>)
      this->template addOperation<&X::at>(
          "at", "The part at an index, or those of a range up to an end.", {.optional = 1});
    else if constexpr (requires { &X::at; })
      this->template addOperation<&X::at>(
          "at", "What stands under a field name; an empty element when nothing does.");
    if constexpr (std::derived_from<X, LatticeValue> && !std::same_as<X, IndexableValue>) {
      this->template addOperation<&X::join>("join", "The least upper bound, as a new value.",
                                            lasting);
      this->template addOperation<&X::meet>("meet", "The greatest lower bound, as a new value.",
                                            lasting);
      this->template addOperation<&X::le>(
          "le", "T when below or equal, F when strictly above, NA when not comparable.");
      this->template addOperation<&X::eq>("eq", "Whether the values are equal, part by part.");
      this->template addOperation<&X::clone, X>("clone", "A new value equal to this one.", lasting);
    }
    if constexpr (requires { &X::prune; })
      this->template addOperation<&X::prune>(
          "prune", "A new record without the field that a path of names leads to.", lasting);
    if constexpr (std::derived_from<X, LatticeType>)
      this->template addOperation<&X::isCompatible>(
          "isCompatible", "Whether values of the two types may be combined.");
    if constexpr (std::same_as<X, Equation>) {
      this->template addOperation<&X::print>("print", "The equation as one line of text.", lasting);
      this->template addOperation<&X::getLhsVariable>("getLhsVariable",
                                                      "The variable that the left side writes.");
      this->template addOperation<&X::getRhsVariables>(
          "getRhsVariables", "The variables that the right side reads, in order.", lasting);
    }
  }

  /// The text of a term or an equation, the size of a system.
  std::string print(const tyve::Value& object) const override {
    if constexpr (std::derived_from<X, Term> || std::same_as<X, Equation>) {
      std::string text = object.isScalar() ? printedForHost(object) : std::string();
      if (!text.empty()) return text;
    } else if constexpr (std::same_as<X, System>) {
      if (object.isScalar())
        if (const System system = Base::fromHost(object)) {
          const std::size_t size = system->getEquations().size();
          return "<" + object.className().text() + ", " + std::to_string(size) +
                 (size == 1 ? " equation>" : " equations>");
        }
    }
    return Base::print(object);
  }

 private:
  static constexpr orb::zero::hb::CallTraits lasting{.isLong = true};
  // The names of a universe are a set, although in an order.
  static constexpr const char* primitives =
      std::same_as<X, PowerSetType> ? "orb.zero.PrimitiveSet" : "orb.zero.PrimitiveSequence";
};

using ArrayWrapper = Wrapper<Array>;
using ArrayElemWrapper = Wrapper<ArrayElem>;
using ArrayTypeWrapper = Wrapper<ArrayType>;
using ConditionalWrapper = Wrapper<Conditional>;
using EquationWrapper = Wrapper<Equation>;
using ExpressionWrapper = Wrapper<Expression>;
using FieldElemWrapper = Wrapper<FieldElem>;
using FieldTypeWrapper = Wrapper<FieldType>;
using IndexRefWrapper = Wrapper<IndexRef>;
using IndexableValueWrapper = Wrapper<IndexableValue>;
using JoinWrapper = Wrapper<Join>;
using LExpressionWrapper = Wrapper<LExpression>;
using LatticeTypeWrapper = Wrapper<LatticeType>;
using LatticeValueWrapper = Wrapper<LatticeValue>;
using MeetWrapper = Wrapper<Meet>;
using PowerSetWrapper = Wrapper<PowerSet>;
using PowerSetTypeWrapper = Wrapper<PowerSetType>;
using PruneWrapper = Wrapper<Prune>;
using StructWrapper = Wrapper<Struct>;
using StructRefWrapper = Wrapper<StructRef>;
using StructTypeWrapper = Wrapper<StructType>;
using SystemWrapper = Wrapper<System>;
using TermWrapper = Wrapper<Term>;
using VariableWrapper = Wrapper<Variable>;

}  // namespace torvan::datamodel::hb
