#include <tyve/factory/Marshaler.h>

#include <cmath>
#include <limits>

namespace tyve::factory {

std::optional<double> numberOf(const Value& value) {
  if (!value.isScalar()) return std::nullopt;
  switch (value.kind()) {
    case Kind::UInt16:
      return value.number<std::uint16_t>();
    case Kind::Int32:
      return value.number<std::int32_t>();
    case Kind::Double:
      return value.number<double>();
    default:
      return std::nullopt;
  }
}

std::optional<bool> LogicalPolicy::fromHost(const Value& value) {
  if (!value.is(Kind::Logical) || !value.isScalar()) return std::nullopt;
  return value.number<bool>();
}

template <class Integer>
std::optional<Integer> IntegerPolicy<Integer>::fromHost(const Value& value) {
  using Limits = std::numeric_limits<Integer>;
  const std::optional<double> number = numberOf(value);
  const bool fits = number && *number >= Limits::min() && *number <= Limits::max() &&
                    *number == std::trunc(*number);
  return fits ? std::optional(static_cast<Integer>(*number)) : std::nullopt;
}
template struct IntegerPolicy<std::uint16_t>;
template struct IntegerPolicy<std::int32_t>;

std::optional<std::string> CharPolicy::fromHost(const Value& value) {
  const bool isText = value.is(Kind::Char) || (value.is(Kind::String) && value.isScalar());
  return isText ? std::optional(value.text()) : std::nullopt;
}

std::optional<std::vector<std::string>> StringCollectionPolicy::fromHost(const Value& value) {
  if (value.is(Kind::Char)) return Native{value.text()};
  if (value.is(Kind::String)) return Native(value.strings().begin(), value.strings().end());
  if (!value.is(Kind::Cell)) return std::nullopt;
  Native texts;
  for (const Value& cell : value.cells()) {
    if (!cell.is(Kind::Char)) return std::nullopt;
    texts.push_back(cell.text());
  }
  return texts;
}

}  // namespace tyve::factory
