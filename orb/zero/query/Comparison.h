#pragma once

#include <concepts>
#include <type_traits>

#include <orb/zero/query/Constrainable.h>

/// Conditions on properties that are known at run time only.
namespace orb::zero::query {

enum class Comparison { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual, Contains };

/// The condition that an accessor of the property makes. Raises "InvalidValue" for a comparison
/// that the property does not offer, and "CannotCastIncompatibleTypes", both with the name of the
/// property, when its values are of another type.
template <class T>
Constraint compare(const meta::PropertyInfo& property, Comparison comparison, const T& value) {
  if (comparison == Comparison::Contains) {
    if constexpr (std::derived_from<T, ModelElement>)
      return ElementCollection(property).contains(value);
    else
      return PrimitiveCollection<T>(property).contains(value);
  }
  const std::conditional_t<std::derived_from<T, ModelElement>, Reference, Primitive<T>> accessor(
      property);
  if (comparison == Comparison::Equal) return accessor == value;
  if (comparison == Comparison::NotEqual) return accessor != value;
  if constexpr (requires { accessor < value; }) {
    if (comparison == Comparison::Less) return accessor < value;
    if (comparison == Comparison::LessOrEqual) return accessor <= value;
    if (comparison == Comparison::Greater) return accessor > value;
    if (comparison == Comparison::GreaterOrEqual) return accessor >= value;
  }
  raise("InvalidValue", {property.getQualifiedName()});
}

}  // namespace orb::zero::query
