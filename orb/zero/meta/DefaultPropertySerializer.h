#pragma once

#include <algorithm>
#include <charconv>
#include <type_traits>
#include <utility>
#include <vector>

#include <orb/zero/Text.h>
#include <orb/zero/meta/Enum.h>
#include <orb/zero/meta/EnumLiteral.h>
#include <orb/zero/meta/PropertySerializer.h>

namespace orb::zero::meta {

/// Texts as they are, in UTF-8.
template <class T>
class DefaultPropertySerializer final : public TypedPropertySerializer<T> {
  static_assert(std::is_same_v<T, std::string> || std::is_same_v<T, std::u16string>);

 protected:
  void write(const T& value, std::string& text) const override {
    if constexpr (std::is_same_v<T, std::string>)
      text += value;
    else
      text += toUtf8(value);
  }
  T read(std::string_view text) const override {
    if constexpr (std::is_same_v<T, std::string>)
      return T(text);
    else
      return toUtf16(text);
  }
};

/// Whole numbers in decimal digits, and "true" and "false".
template <std::integral T>
class DefaultPropertySerializer<T> final : public TypedPropertySerializer<T> {
  static constexpr bool isBoolean = std::is_same_v<T, bool>;

 public:
  PropertySerializer::Form form() const noexcept override {
    return isBoolean ? PropertySerializer::Form::Boolean : PropertySerializer::Form::Number;
  }

 protected:
  void write(const T& value, std::string& text) const override {
    if constexpr (isBoolean) {
      text += value ? "true" : "false";
    } else {
      char digits[24];
      text.append(digits, std::to_chars(digits, std::end(digits), value).ptr);
    }
  }
  T read(std::string_view text) const override {
    if constexpr (isBoolean) {
      if (text == "true" || text == "false") return text == "true";
    } else {
      T value{};
      const char* const end = text.data() + text.size();
      const auto [last, error] = std::from_chars(text.data(), end, value);
      if (error == std::errc() && last == end) return value;
    }
    this->raiseNoValue(text, valueName<T>());
  }
};

/// Literals of an enumeration, all in one of their forms. There is no other value.
template <class T>
requires std::is_enum_v<T>
class DefaultPropertySerializer<T> final : public TypedPropertySerializer<T> {
 public:
  /// The enumeration has its literals and its registered name already.
  DefaultPropertySerializer(const Enum& type, LiteralText form) {
    for (const EnumLiteral& literal : type->getLiterals())
      texts_.emplace_back(static_cast<T>(literal->getValue()), literal->getText(form));
  }

 protected:
  void write(const T& value, std::string& text) const override {
    const auto found = std::ranges::find(texts_, value, &Entry::first);
    if (found == texts_.end())
      this->raiseNoValue(std::to_string(static_cast<std::underlying_type_t<T>>(value)),
                         valueName<T>());
    text += found->second;
  }
  T read(std::string_view text) const override {
    const auto found = std::ranges::find(texts_, text, &Entry::second);
    if (found == texts_.end()) this->raiseNoValue(text, valueName<T>());
    return found->first;
  }
  T initial() const override { return texts_.front().first; }

 private:
  using Entry = std::pair<T, std::string>;
  std::vector<Entry> texts_;
};

}  // namespace orb::zero::meta
