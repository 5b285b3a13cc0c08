#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tyve/Exception.h>
#include <tyve/Value.h>

namespace tyve::factory {

/// Converts between host values and a native type. A policy says which: its type word, `fromHost`,
/// which gives nothing for a value that does not fit, and `toHost`.
template <class Policy>
class Marshaler {
 public:
  using Native = typename Policy::Native;

  /// Raises "WrongValue" with the type word when the value does not fit.
  static Native fromHost(const Value& value) {
    std::optional<Native> native = Policy::fromHost(value);
    if (!native) raise("WrongValue", {std::string(Policy::word), value.describe()});
    return *std::move(native);
  }
  static Value toHost(const Native& native) { return Policy::toHost(native); }

  /// Brings a host value into the form that the type word promises; nothing when it does not fit.
  static std::optional<Value> convert(const Value& value) {
    const std::optional<Native> native = Policy::fromHost(value);
    return native ? std::optional(Policy::toHost(*native)) : std::nullopt;
  }
};

/// The number that a value is, exact as all integers of the host are as a double; nothing for a
/// logical, an array and what is none.
TYVE_API std::optional<double> numberOf(const Value& value);

struct TYVE_API LogicalPolicy {
  using Native = bool;
  static constexpr std::string_view word = "logical scalar";
  static std::optional<Native> fromHost(const Value& value);
  static Value toHost(Native native) { return Value::scalar(native); }
};

/// Takes every integral number in the range of the type, but no logical.
template <class Integer>
struct TYVE_API IntegerPolicy {
  using Native = Integer;
  static constexpr std::string_view word =
      std::is_same_v<Integer, std::uint16_t> ? "uint16 scalar" : "int32 scalar";
  static std::optional<Native> fromHost(const Value& value);
  static Value toHost(Native native) { return Value::scalar(native); }
};
extern template struct IntegerPolicy<std::uint16_t>;
extern template struct IntegerPolicy<std::int32_t>;

/// A text as a row of characters.
struct TYVE_API CharPolicy {
  using Native = std::string;
  static constexpr std::string_view word = "char";
  static std::optional<Native> fromHost(const Value& value);
  static Value toHost(const Native& native) { return Value::text(native); }
};

/// A text as a string.
struct TYVE_API StringPolicy : CharPolicy {
  static constexpr std::string_view word = "TyveFactoryString scalar";
  static Value toHost(const Native& native) { return Value::string(native); }
};

/// A list of texts: strings, a cell array with a row of characters each, or one row of characters.
struct TYVE_API StringCollectionPolicy {
  using Native = std::vector<std::string>;
  static constexpr std::string_view word = "TyveFactoryString vector";
  static std::optional<Native> fromHost(const Value& value);
  static Value toHost(const Native& native) { return Value::strings(native); }
};

namespace detail {

/// Registers the type words of strings with the class system. A class whose signatures use them
/// calls this first; all but the first call do nothing.
TYVE_API void initStringDataTypes();

}  // namespace detail

}  // namespace tyve::factory
