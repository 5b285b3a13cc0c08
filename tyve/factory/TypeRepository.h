#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>

#include <tyve/Value.h>

namespace tyve::factory {

/// What follows the name of a class in a type word that also takes what has no class.
inline constexpr std::string_view orNone = " or none";

/// Makes of any host value one in the form that a type word promises; nothing when it cannot.
using Conversion = std::function<std::optional<Value>(const Value&)>;

/// A type word with what it means. All threads read it without a lock.
class TYVE_API TypeWord {
 public:
  explicit TypeWord(Name name);

  /// Whether the value fits the word. If it is not in the form that the word promises, `made`
  /// becomes a value that is. Passes on what a registered conversion raises.
  bool fits(const Value& value, std::optional<Value>& made) const;
  /// Whether the value is of the class that the word names, or of a subclass, whatever conversion
  /// is registered.
  bool isClassOf(const Value& value) const;

 private:
  friend class TypeRepository;

  Name name_;
  bool takesNone_;
  Name class_;
  std::unique_ptr<const Conversion> owned_;
  std::atomic<const Conversion*> conversion_ = nullptr;  // what is owned, once it is there
};

/// The meaning of the type words in signatures:
///
/// | word | takes | gives |
/// |---|---|---|
/// | any | all values | the value |
/// | char | a row of characters, one string | a row of characters |
/// | logical scalar | one logical | the same |
/// | uint16 scalar, int32 scalar | one integral number in range, no logical | one of the type |
/// | TyveFactoryString scalar | as char | one string |
/// | TyveFactoryString vector | strings, a cell array of texts, one text | a row of strings |
/// | a class | what is of it or of a subclass, also empty or an array | the value |
/// | a class, " or none" | the same, and the empty object without a class | the value |
///
/// Libraries add words of their own. Guarded by a lock of its own.
class TYVE_API TypeRepository {
 public:
  TypeRepository();

  /// Registers a conversion from any value under a word, unless the word has one. A conversion
  /// under the name of a class replaces the test for that class, but of values of exactly that
  /// class, which stay as they are.
  void addConversion(Name word, Conversion conversion);
  /// The word itself. It stays in its place, and what is registered under it later is found, too.
  const TypeWord& word(Name name);
  /// The value in the form that the word promises; nothing when it does not fit. Passes on what a
  /// registered conversion raises.
  std::optional<Value> convert(const Value& value, Name word);

 private:
  std::mutex mutex_;
  std::unordered_map<Name, TypeWord> words_;  // its nodes stay in place
};

}  // namespace tyve::factory
