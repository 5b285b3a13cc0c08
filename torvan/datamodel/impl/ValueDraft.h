#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <torvan/datamodel/BitSet.h>
#include <torvan/datamodel/LatticeValue.h>
#include <torvan/datamodel/TypeFactory.h>

namespace torvan::datamodel {

/// What is wrong with a text of values; whoever reads it knows where.
struct TextProblem {
  std::string sentence;
};

template <class Number>
Number parseNumber(std::string_view text) {
  Number number = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size())
    throw TextProblem{"The number is not whole, or out of range."};
  return number;
}

/// What a type or a value holds, under the word that says so, which decides its kind.
class DraftContent {
 public:
  /// Throws TextProblem the second time.
  void set(std::string_view word);
  bool is(std::string_view word) const { return word_ == word; }

 private:
  std::string word_;
};

/// What the text says of a type.
struct TypeDraft {
  /// Throws TextProblem for what is missing.
  LatticeType make(TypeFactory& factory) const;

  std::string name;
  std::optional<std::uint16_t> size;
  DraftContent content;
  std::vector<std::string> names;  // of the universe or of the fields
  std::vector<LatticeType> types;  // of the fields or of the elements
};

/// What the text says of a value. One with parts is made before these.
struct ValueDraft {
  void begin(const orb::zero::Model& model, std::string_view word);
  /// Stores a part under the name or index.
  void store(const std::string& key, const LatticeValue& part) const;
  /// Throws TextProblem for what is missing or does not fit.
  LatticeValue make(const orb::zero::Model& model) const;

  LatticeType type;
  std::optional<std::uint64_t> id;
  std::optional<std::uint64_t> size;
  DraftContent content;
  std::string digits;
  LatticeValue composite;
};

}  // namespace torvan::datamodel
