#include <torvan/bindings/Wrappers.h>

#include <algorithm>
#include <iterator>

namespace torvan::datamodel::hb {

std::string_view propertyText(const Property& property) {
  static constexpr About texts[] = {
      {"Array.values", "The stored elements by their indices."},
      {"ArrayElem.index", "The index in the array, from 1."},
      {"ArrayElem.value", "The value at the index."},
      {"ArrayType.elemType", "The type of the values in the array."},
      {"Conditional.ctrlExpr", "What decides between the two operands."},
      {"Conditional.operandFalse", "The operand for when the control expression does not hold."},
      {"Conditional.operandTrue", "The operand for when the control expression holds."},
      {"Equation.lhs", "The place that receives the value."},
      {"Equation.rhs", "The term that is evaluated."},
      {"FieldElem.name", "The name of the field."},
      {"FieldElem.value", "The value of the field."},
      {"FieldType.elemType", "The type of the values of the field."},
      {"FieldType.name", "The name of the field."},
      {"IndexRef.endIndex", "The last index of the range."},
      {"IndexRef.expr", "What the range is taken from."},
      {"IndexRef.startIndex", "The first index of the range, from 1."},
      {"Join.operands", "What is joined, in order."},
      {"LatticeType.bottom", "The least value of the type."},
      {"LatticeType.name", "The name; that of an anonymous type is empty."},
      {"LatticeType.numElems",
       "The size of the universe of sets, the length of arrays; 1 for records."},
      {"LatticeType.top", "The greatest value of the type."},
      {"Meet.operands", "What is met, in order."},
      {"PowerSetType.universe", "The names of the elements, in order; none when they have none."},
      {"Prune.expr", "The record that is pruned."},
      {"Prune.field", "The path of names to the field that is left out."},
      {"Struct.values", "The stored fields by their names."},
      {"StructRef.expr", "The record that the field is taken from."},
      {"StructRef.field", "The name of the field."},
      {"StructType.fields", "The fields by their names."},
      {"System.equations", "The equations, in order."},
      {"Term.type", "The lattice type of the value; an empty one when it is not known."},
      {"Variable.name", "The name."},
  };
  const std::string name = property.getQualifiedName();
  const auto found = std::ranges::find_if(
      texts, [&](const About& about) { return name.ends_with('.' + std::string(about.name)); });
  return found == std::end(texts) ? std::string_view() : found->text;
}

std::string printedForHost(const tyve::Value& object) {
  constexpr std::size_t most = 10'000;
  return PrettyPrinter::excerpt(
      orb::zero::hb::elementOf(object, orb::zero::ModelElement::metaClass()), most);
}

}  // namespace torvan::datamodel::hb
