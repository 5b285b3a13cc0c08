#pragma once

#include <span>
#include <string>
#include <string_view>

#include <orb/zero/Value.h>
#include <orb/zero/meta/Type.h>

namespace orb::zero::meta {

/// Turns values of one type into text and back: the text under which they are saved, or shown.
class ORB_ZERO_API PropertySerializer {
 public:
  /// What the texts look like. Numbers and truth values ("true", "false") need no quotes.
  enum class Form { Text, Number, Boolean };

  PropertySerializer() = default;
  PropertySerializer(const PropertySerializer&) = delete;
  PropertySerializer& operator=(const PropertySerializer&) = delete;
  virtual ~PropertySerializer();

  virtual Form form() const noexcept { return Form::Text; }
  /// Whether the values have no text, so that there is nothing to save.
  virtual bool isTransient() const noexcept { return false; }

  /// The text of a single value, alone or behind other text. Raises "CannotCastIncompatibleTypes"
  /// for a value of another type.
  std::string serializeValue(const Value& value) const;
  virtual void append(const Value& value, std::string& text) const = 0;
  /// The value that has this text, as one or as an optional. Raises "CannotParseValue" with the
  /// text and the type when there is none.
  virtual Value parseValue(std::string_view text) const = 0;
  virtual Value parseOptionalValue(std::string_view text) const = 0;

  /// One value that holds copies of these, in their order or as a set. Raises
  /// "CannotCastIncompatibleTypes" when the type, or that of a value, is another.
  virtual Value combineAsUnmanagedSequenceValue(const Type& type,
                                                std::span<const Value> values) const = 0;
  virtual Value combineAsUnmanagedSetValue(const Type& type,
                                           std::span<const Value> values) const = 0;
  virtual Value createDefaultValue() const = 0;
  virtual Value createEmptyOptionalValue() const = 0;

 protected:
  static void checkType(const Type& type, std::string_view expected);
  [[noreturn]] static void raiseNoValue(std::string_view text, std::string_view type);
};

/// What is left to the serializer of a T: its text, and the value that a text stands for.
template <class T>
class TypedPropertySerializer : public PropertySerializer {
 public:
  void append(const Value& value, std::string& text) const final {
    write(value.getValue<T>(), text);
  }
  Value parseValue(std::string_view text) const final { return read(text); }
  Value parseOptionalValue(std::string_view text) const final {
    return boost::optional<T>(read(text));
  }
  Value combineAsUnmanagedSequenceValue(const Type& type,
                                        std::span<const Value> values) const final {
    return combine<std::vector<T>>(type, values);
  }
  Value combineAsUnmanagedSetValue(const Type& type, std::span<const Value> values) const final {
    return combine<std::set<T>>(type, values);
  }
  Value createDefaultValue() const final { return initial(); }
  Value createEmptyOptionalValue() const final { return boost::optional<T>(); }

 protected:
  virtual void write(const T& value, std::string& text) const = 0;
  virtual T read(std::string_view text) const = 0;
  virtual T initial() const { return T(); }

 private:
  template <class Collection>
  static Value combine(const Type& type, std::span<const Value> values) {
    checkType(type, valueName<T>());
    Collection combined;
    for (const Value& value : values) combined.insert(combined.end(), value.getValue<T>());
    return combined;
  }
};

}  // namespace orb::zero::meta
