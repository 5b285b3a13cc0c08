#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <tyve/Name.h>

namespace tyve {

/// What stands behind a host object. Who makes host objects derives from it; the payload is shared
/// by all values that are the object, and deleted with the last one.
class TYVE_API NativeObject {
 public:
  virtual ~NativeObject();

  /// Whether it can be used: false when what it refers to is gone or never was there.
  virtual bool isValid() const noexcept = 0;
  /// Whether both are the same object to the host; `other` may be of any type.
  virtual bool isEqual(const NativeObject& other) const noexcept = 0;
  /// Equal objects have one hash.
  virtual std::size_t hash() const noexcept = 0;
  /// What it is a part of: objects of one domain are used by one thread at a time. Null, as by
  /// default, for an object that any threads may use at once.
  virtual const void* domain() const noexcept;

 protected:
  NativeObject() = default;
  NativeObject(const NativeObject&) = default;
  NativeObject& operator=(const NativeObject&) = default;
};

enum class Kind : std::uint8_t {
  Logical,
  UInt16,
  Int32,
  Double,
  Char,         ///< a row of characters
  String,       ///< an array of texts
  Cell,         ///< an array of values
  Struct,       ///< an array of values by field
  Enumeration,  ///< an array of members of an enumeration class, by their int32 values
  Object,       ///< an array of objects, or an empty object
};

/// The elements of numeric arrays.
template <class T>
concept Number = std::same_as<T, bool> || std::same_as<T, std::uint16_t> ||
    std::same_as<T, std::int32_t> || std::same_as<T, double>;

struct Size {
  std::size_t rows = 0, columns = 0;

  std::size_t count() const noexcept { return rows * columns; }
  friend bool operator==(const Size&, const Size&) = default;
};

/// A value of the host: an array of rows by columns of one kind, stored by columns; a single thing
/// is 1 by 1. It never changes, a copy shares the elements, and all threads may read it. Texts are
/// UTF-8. Positions count from 0; one beyond the end raises "IndexOutOfRange". Reading it as a kind
/// that it is not raises "WrongValue" with what was expected and what is there; making one of more
/// or fewer elements than its size says raises "SizeMismatch". What is read by reference lasts
/// as long as this very value.
class TYVE_API Value {
 public:
  /// The empty object without a class.
  Value() noexcept = default;

  template <Number T>
  static Value scalar(T number);
  template <Number T>
  static Value array(std::span<const T> numbers, Size size);
  template <Number T>
  static Value row(std::span<const T> numbers) {
    return array<T>(numbers, {1, numbers.size()});
  }
  /// A row of characters; its columns are the code points.
  static Value text(std::string text);
  static Value string(std::string text);
  static Value strings(std::vector<std::string> texts, Size size);
  static Value strings(std::vector<std::string> texts);  ///< as a row
  static Value cell(std::vector<Value> values, Size size);
  static Value cell(std::vector<Value> values);  ///< as a row
  /// An array of structs with these fields: `values` are those of the first struct in the order of
  /// the fields, then those of the second, and so on.
  static Value structure(std::vector<std::string> fields, std::vector<Value> values,
                         Size size = {1, 1});
  /// One object, of a native object that is not null. `ClassSystem::announce` also checks the
  /// class.
  static Value object(Name className, std::shared_ptr<const NativeObject> native);
  /// An array of objects, each given as a 1-by-1 object, which keeps its own class.
  static Value objects(Name className, std::vector<Value> objects, Size size);
  /// The empty object of a class.
  static Value empty(Name className);
  /// One member of an enumeration; `COSClassInfo::makeEnumeration` also checks it.
  static Value member(Name className, std::int32_t value);
  /// The same elements under a class: an array of objects, or one of int32, which becomes an array
  /// of members of the enumeration. `COSClassInfo::makeEnumeration` also checks the members.
  Value withClass(Name className) const;

  Kind kind() const noexcept { return kind_; }
  /// "double", "char", "struct", … or the class of the objects; none for the classless empty
  /// object.
  Name className() const { return kind_ >= Kind::Enumeration ? class_ : builtinName(kind_); }
  Size size() const noexcept { return size_; }
  std::size_t count() const noexcept { return size_.count(); }
  bool isEmpty() const noexcept { return count() == 0; }
  bool isScalar() const noexcept { return size_ == Size{1, 1}; }
  bool is(Kind kind) const noexcept { return kind_ == kind; }

  /// One element, as a value of its own; of a row of characters none can be had.
  Value at(std::size_t position) const;
  Value at(std::size_t row, std::size_t column) const;

  /// The numbers of an array of exactly this type; as int32 also those behind enumeration members.
  template <Number T>
  std::span<const T> numbers() const;
  /// The only one of them.
  template <Number T>
  T number() const;
  /// The text of a row of characters or of the only string.
  const std::string& text() const;
  /// The texts of an array of strings.
  std::span<const std::string> strings() const;
  /// The values in a cell array.
  std::span<const Value> cells() const;
  /// The names of the fields of an array of structs, in their order.
  std::span<const std::string> fields() const;
  const Value& field(std::size_t field, std::size_t position = 0) const;
  /// The same by its name. Raises "UnknownField" when there is none of this name.
  const Value& field(std::string_view name, std::size_t position = 0) const;
  /// What stands behind the only object.
  const std::shared_ptr<const NativeObject>& native() const;

  /// The value in a few words, for messages: "2.5", "'text'", "a 2-by-3 double".
  std::string describe() const;

  /// Equal in kind, class, size and elements; objects, when their native objects say so.
  friend TYVE_API bool operator==(const Value& a, const Value& b);

 private:
  struct Structs;
  template <class T>
  using Elements = std::shared_ptr<const T[]>;
  /// One number in place, or the shared ones of an array.
  template <Number T>
  struct Numbers {
    const T* get() const noexcept { return shared ? shared.get() : &one; }
    const T& operator[](std::size_t position) const noexcept { return get()[position]; }
    friend bool operator==(const Numbers&, const Numbers&) = default;

    T one{};
    Elements<T> shared;
  };
  using Data =
      std::variant<std::monostate, Numbers<bool>, Numbers<std::uint16_t>, Numbers<std::int32_t>,
                   Numbers<double>, Elements<std::string>, Elements<Value>,
                   std::shared_ptr<const Structs>, std::shared_ptr<const NativeObject>>;

  Value(Kind kind, Name className, Size size, Data data);
  static Name builtinName(Kind kind);
  template <class T>
  static Value make(Kind kind, Name className, Size size, std::span<T> elements);
  template <class T>
  std::span<const T> elements(bool isRightKind, std::string_view expected) const;
  void checkPosition(std::size_t position) const;
  [[noreturn]] void raiseNo(std::string_view expected) const;

  Kind kind_ = Kind::Object;
  Name class_;  // of enumerations and objects
  Size size_;
  Data data_;
};

}  // namespace tyve
