#pragma once

#include <functional>
#include <optional>
#include <shared_mutex>
#include <unordered_map>

#include <tyve/Value.h>

namespace tyve::factory {

/// Makes of any host value one in the form that a type word promises; nothing when it cannot.
using Conversion = std::function<std::optional<Value>(const Value&)>;

/// The meaning of the type words in signatures:
///
/// | word | takes | gives |
/// |---|---|---|
/// | any | all values | the value |
/// | char | a row of characters, one string | a row of characters |
/// | logical scalar | one logical | the same |
/// | uint16 scalar, int32 scalar | one integral number in the range, but no logical | one of the
/// type | | TyveFactoryString scalar | as char | one string | | TyveFactoryString vector | strings,
/// a cell array of rows of characters, one row | a row of strings | | a class | an object, an array
/// or an empty object of it or of a subclass | the value |
///
/// Libraries add words of their own. Guarded by a lock of its own.
class TYVE_API TypeRepository {
 public:
  TypeRepository();

  /// Registers a conversion from any value under a word, unless the word has one. A conversion
  /// under the name of a class replaces the test for that class.
  void addConversion(Name word, Conversion conversion);
  /// The conversion registered under this word, or null.
  const Conversion* findConversion(Name word) const;
  /// The value in the form that the word promises; nothing when it does not fit. Passes on what a
  /// registered conversion raises.
  std::optional<Value> convert(const Value& value, Name word) const;

 private:
  mutable std::shared_mutex mutex_;
  std::unordered_map<Name, Conversion> conversions_;  // its nodes stay in place
};

}  // namespace tyve::factory
