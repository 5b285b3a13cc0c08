#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <orb/zero/Transaction.h>
#include <orb/zero/hb/NativeClass.h>
#include <torvan/bindings/session/impl/HostBits.h>
#include <torvan/bindings/session/impl/HostLists.h>
#include <torvan/bindings/session/impl/SessionClasses.h>
#include <torvan/bindings/session/impl/SessionObjects.h>

namespace torvan::datamodel::hb {
namespace {

using orb::zero::hb::OrNone;
using tyve::Value;
using Texts = std::vector<std::string>;

/// What is made is whole or not there.
template <class Make>
auto unit(const orb::zero::Model& model, Make make) {
  orb::zero::Transaction transaction(model);
  auto made = make();
  transaction.commit();
  return made;
}

PowerSetType createPowerSetType(TypeFactory& factory, const std::string& name,
                                const Value& universe) {
  using Number = tyve::factory::IntegerPolicy<std::uint16_t>;
  if (const auto size = Number::fromHost(universe)) return factory.createPowerSetType(name, *size);
  const bool isNumber = tyve::factory::numberOf(universe).has_value();
  const Texts names = isNumber ? Texts() : itemsOf<std::string>(universe);
  if (isNumber || names.size() > std::numeric_limits<std::uint16_t>::max())
    orb::zero::raise("InvalidValue", {universe.describe(), "a universe has 0 to 65535 elements"});
  return factory.createPowerSetType(name, names);
}

List membersOf(const PowerSet& set) {
  const PowerSetType type{set->getType()};
  List members;
  const BitSet bits = set->bits().copy();
  for (auto bit = bits.find_first(); bit != BitSet::npos; bit = bits.find_next(bit)) {
    if (!type || bit >= type->getUniverse().size())
      orb::zero::raise("InvalidValue", {std::to_string(bit + 1), "the element has no name"});
    members.values.push_back(Value::text(type->getUniverse()[bit]));
  }
  return members;
}

List indicesOf(const PowerSet& set) {
  List indices;
  const BitSet bits = set->bits().copy();
  for (auto bit = bits.find_first(); bit != BitSet::npos; bit = bits.find_next(bit))
    indices.values.push_back(Value::scalar(static_cast<std::int32_t>(bit + 1)));
  return indices;
}

std::string textOf(const PowerSet& set) {
  std::string text;
  to_string(set->bits().copy(), text);
  return text;
}

}  // namespace

ClassPointer makeTypeFactoryClass() {
  auto info = std::make_unique<orb::zero::hb::NativeClass<TypeFactoryObject>>(
      "Makes lattice types with their top and bottom.");
  info->method(
      "create_power_set_type", "name universe",
      "Sets over a universe: a list of names, or a number of elements without names.",
      [](const TypeFactoryObject& session, const std::string& name, const Value& universe) {
        return unit(session->model(),
                    [&] { return createPowerSetType(*session->typeFactory(), name, universe); });
      });
  info->method(
      "create_struct_type", "name fields opt_types",
      "Records: a struct of types by field names, or a list of names and one of as many types.",
      [](const TypeFactoryObject& session, const std::string& name, const Value& fields,
         const Value& types) {
        const auto entries = fieldsOf<LatticeType>(fields, types);
        return unit(session->model(), [&] {
          return session->typeFactory()->createStructType(name, entries.keys, entries.values);
        });
      },
      {.optional = 1});
  info->method("create_array_type", "name elem_type size", "Arrays of so many elements of a type.",
               [](const TypeFactoryObject& session, const std::string& name,
                  const LatticeType& elemType, std::uint16_t size) {
                 return unit(session->model(), [&] {
                   return session->typeFactory()->createArrayType(name, elemType, size);
                 });
               },
               {.isLong = true});
  return info;
}

ClassPointer makeValueFactoryClass() {
  auto info = std::make_unique<orb::zero::hb::NativeClass<ValueFactoryObject>>(
      "Makes lattice values, of which others become parts as they are.");
  info->method(
      "create_power_set", "type bits",
      "A set; bits are a list of names and of indices from 1, a text such as '101' (the last "
      "element first) or '0x5', or a number (the first element is its lowest bit).",
      [](const ValueFactoryObject& session, const PowerSetType& type, const Value& bits) {
        return session->valueFactory()->createPowerSet(type, bitsFromHost(bits, type));
      });
  info->method(
      "create_struct", "type fields opt_values",
      "A record: a struct of values by field names, or a list of names and one of as many values.",
      [](const ValueFactoryObject& session, const StructType& type, const Value& fields,
         const Value& values) {
        const auto entries = fieldsOf<LatticeValue>(fields, values);
        return unit(session->model(), [&] {
          return session->valueFactory()->createStruct(type, entries.keys, entries.values);
        });
      },
      {.optional = 1});
  info->method("create_array", "type indices values",
               "An array: a list of indices, from 1, and one of as many values.",
               [](const ValueFactoryObject& session, const ArrayType& type, const Value& indices,
                  const Value& values) {
                 const auto entries = entriesOf<std::uint16_t, LatticeValue>(indices, values);
                 return unit(session->model(), [&] {
                   return session->valueFactory()->createArray(type, entries.keys, entries.values);
                 });
               });
  return info;
}

ClassPointer makeExpressionFactoryClass() {
  auto info = std::make_unique<orb::zero::hb::NativeClass<ExpressionFactoryObject>>(
      "Makes expressions and gives them their types.");
  info->method("create_variable", "type name", "An unknown of a system of equations.",
               [](const ExpressionFactoryObject& session, const OrNone<LatticeType>& type,
                  const std::string& name) {
                 return session->expressionFactory()->createVariable(type, name);
               });
  info->method("create_join", "terms", "The join of a list of terms; empty ones keep their place.",
               [](const ExpressionFactoryObject& session, const Value& terms) {
                 return session->expressionFactory()->createJoin(itemsOf<Term>(terms));
               });
  info->method("create_meet", "terms", "The meet of a list of terms; empty ones keep their place.",
               [](const ExpressionFactoryObject& session, const Value& terms) {
                 return session->expressionFactory()->createMeet(itemsOf<Term>(terms));
               });
  info->method("create_struct_ref", "expr field", "The field of a record.",
               [](const ExpressionFactoryObject& session, const OrNone<LExpression>& expr,
                  const std::string& field) {
                 return session->expressionFactory()->createStructRef(expr, field);
               });
  info->method("create_index_ref", "expr start opt_end",
               "The part at an index, or those of a range; both from 1 and inclusive.",
               [](const ExpressionFactoryObject& session, const OrNone<LExpression>& expr,
                  std::uint16_t start, std::optional<std::uint16_t> end) {
                 return session->expressionFactory()->createIndexRef(expr, start, end);
               },
               {.optional = 1});
  info->method("create_conditional", "ctrl operand_true operand_false",
               "One of two terms, as the control expression decides.",
               [](const ExpressionFactoryObject& session, const OrNone<Expression>& ctrl,
                  const OrNone<Term>& operandTrue, const OrNone<Term>& operandFalse) {
                 return session->expressionFactory()->createConditional(ctrl, operandTrue,
                                                                        operandFalse);
               });
  info->method(
      "create_prune", "expr fields", "A record without the field that a path of names leads to.",
      [](const ExpressionFactoryObject& session, const OrNone<Expression>& expr,
         const Value& fields) {
        return session->expressionFactory()->createPrune(expr, itemsOf<std::string>(fields));
      });
  return info;
}

ClassPointer makeSystemBuilderClass() {
  auto info = std::make_unique<orb::zero::hb::NativeClass<SystemBuilderObject>>(
      "Assembles a system of equations, which exists from the start.");
  info->method("add_equation", "lhs rhs", "A new equation at the end of the system.",
               [](const SystemBuilderObject& builder, const OrNone<LExpression>& lhs,
                  const OrNone<Term>& rhs) {
                 return unit(builder->build()->getModel(),
                             [&] { return builder->addEquation(lhs, rhs); });
               });
  info->method("build", "", "The system, always the same; equations may be added after.",
               [](const SystemBuilderObject& builder) { return builder->build(); });
  return info;
}

ClassPointer makeBitsClass() {
  auto info = std::make_unique<orb::zero::hb::NativeClass<Bits>>(
      "Reads and writes the bits of power sets.");
  info->staticMethod(
      "members", "set",
      "The names of the elements of a set, in their order; see indices for those without.",
      membersOf);
  info->staticMethod("indices", "set", "The indices of the elements of a set, from 1.", indicesOf);
  info->staticMethod("text", "set", "All bits of a set as they print, the last element first.",
                     textOf);
  info->staticMethod("hex", "set", "The bits as a hexadecimal number, such as '0x5'.",
                     [](const PowerSet& set) {
                       const std::string digits = toHexadecimal(set->bits().copy());
                       return "0x" + (digits.empty() ? "0" : digits);
                     });
  info->staticMethod("count", "set", "The number of elements of a set.", [](const PowerSet& set) {
    return static_cast<std::int32_t>(set->bits().copy().count());
  });
  info->staticMethod(
      "set", "set bits",
      "Gives a set other bits; they are given as to ValueFactory.create_power_set.",
      [](const PowerSet& set, const Value& bits) { set->setValue(bitsFromHost(bits, set)); });
  return info;
}

}  // namespace torvan::datamodel::hb
