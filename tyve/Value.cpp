#include <tyve/Value.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <tuple>
#include <type_traits>
#include <utility>

#include <tyve/Exception.h>

namespace tyve {
namespace {

template <Number T>
constexpr Kind kindOf = std::is_same_v<T, bool>            ? Kind::Logical
                        : std::is_same_v<T, std::uint16_t> ? Kind::UInt16
                        : std::is_same_v<T, std::int32_t>  ? Kind::Int32
                                                           : Kind::Double;

bool hasClass(Kind kind) { return kind >= Kind::Enumeration; }

template <class T>
requires std::is_arithmetic_v<T> std::string printed(T number) {
  char digits[32];
  return {digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr};
}
std::string printed(bool value) { return value ? "true" : "false"; }

std::string quoted(const std::string& text) { return "'" + text + "'"; }

void checkSize(Size size, std::size_t count) {
  if (size.count() != count)
    raise("SizeMismatch",
          {std::to_string(size.rows), std::to_string(size.columns), std::to_string(count)});
}

Size rowOf(std::size_t count) { return {1, count}; }

}  // namespace

/// Structs share the names of their fields.
struct Value::Structs {
  std::shared_ptr<const std::vector<std::string>> fields;
  std::vector<Value> values;  // struct by struct
};

NativeObject::~NativeObject() = default;
const void* NativeObject::domain() const noexcept { return nullptr; }

Value::Value(Kind kind, Name className, Size size, Data data)
    : kind_(kind), class_(className), size_(size), data_(std::move(data)) {}

/// The classes of values that are no objects, by kind.
Name Value::builtinName(Kind kind) {
  static const std::array names{intern("logical"), intern("uint16"), intern("int32"),
                                intern("double"),  intern("char"),   intern("string"),
                                intern("cell"),    intern("struct")};
  return names[static_cast<std::size_t>(kind)];
}

template <class T>
Value Value::make(Kind kind, Name className, Size size, std::span<T> given) {
  checkSize(size, given.size());
  using Element = std::remove_const_t<T>;
  if constexpr (Number<Element>)
    if (given.size() == 1) return {kind, className, size, Numbers<Element>{given.front(), {}}};
  auto copy = std::make_shared<Element[]>(given.size());
  if constexpr (std::is_const_v<T>)
    std::ranges::copy(given, copy.get());
  else
    std::ranges::move(given, copy.get());
  if constexpr (Number<Element>)
    return {kind, className, size, Numbers<Element>{{}, std::move(copy)}};
  else
    return {kind, className, size, Elements<Element>(std::move(copy))};
}

template <Number T>
Value Value::scalar(T number) {
  return {kindOf<T>, {}, {1, 1}, Numbers<T>{number, {}}};
}
template Value Value::scalar(bool);
template Value Value::scalar(std::uint16_t);
template Value Value::scalar(std::int32_t);
template Value Value::scalar(double);

template <Number T>
Value Value::array(std::span<const T> numbers, Size size) {
  return make(kindOf<T>, {}, size, numbers);
}
template Value Value::array(std::span<const bool>, Size);
template Value Value::array(std::span<const std::uint16_t>, Size);
template Value Value::array(std::span<const std::int32_t>, Size);
template Value Value::array(std::span<const double>, Size);

Value Value::text(std::string text) {
  const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  const auto count = static_cast<std::size_t>(std::ranges::count_if(text, isFirstByte));
  Value row = string(std::move(text));
  return {Kind::Char, {}, rowOf(count), std::move(row.data_)};
}

Value Value::string(std::string text) {
  return make(Kind::String, {}, {1, 1}, std::span(&text, 1));
}
Value Value::strings(std::vector<std::string> texts, Size size) {
  return make(Kind::String, {}, size, std::span(texts));
}
Value Value::strings(std::vector<std::string> texts) {
  const Size size = rowOf(texts.size());
  return strings(std::move(texts), size);
}

Value Value::cell(std::vector<Value> values, Size size) {
  return make(Kind::Cell, {}, size, std::span(values));
}
Value Value::cell(std::vector<Value> values) {
  const Size size = rowOf(values.size());
  return cell(std::move(values), size);
}

Value Value::structure(std::vector<std::string> fields, std::vector<Value> values, Size size) {
  checkSize({size.count(), fields.size()}, values.size());
  return {
      Kind::Struct,
      {},
      size,
      std::make_shared<const Structs>(Structs{
          std::make_shared<const std::vector<std::string>>(std::move(fields)), std::move(values)})};
}

Value Value::object(Name className, std::shared_ptr<const NativeObject> native) {
  return {Kind::Object, className, {1, 1}, std::move(native)};
}
Value Value::objects(Name className, std::vector<Value> objects, Size size) {
  for (const Value& object : objects) object.native();
  return make(Kind::Object, className, size, std::span(objects));
}
Value Value::empty(Name className) { return {Kind::Object, className, {}, {}}; }

Value Value::member(Name className, std::int32_t value) {
  return {Kind::Enumeration, className, {1, 1}, Numbers<std::int32_t>{value, {}}};
}

Value Value::withClass(Name className) const {
  Value other = *this;
  other.class_ = className;
  if (kind_ == Kind::Int32)
    other.kind_ = Kind::Enumeration;
  else if (!hasClass(kind_))
    raiseNo("object");
  return other;
}

void Value::checkPosition(std::size_t position) const {
  if (position >= count())
    raise("IndexOutOfRange", {std::to_string(position), std::to_string(count())});
}

Value Value::at(std::size_t position) const {
  checkPosition(position);
  const auto pick = [&]<class T>(const T& data) -> Value {
    if constexpr (std::is_same_v<T, Elements<Value>>) {
      return kind_ == Kind::Object ? data[position] : cell({data[position]});
    } else if constexpr (requires { data[position]; }) {
      return make(kind_, class_, {1, 1}, std::span(&data[position], 1));
    } else if constexpr (std::is_same_v<T, std::shared_ptr<const Structs>>) {
      const std::size_t width = data->fields->size();
      const auto first = data->values.begin() + static_cast<std::ptrdiff_t>(position * width);
      std::vector<Value> values(first, first + static_cast<std::ptrdiff_t>(width));
      return {kind_, {}, {1, 1}, std::make_shared<const Structs>(Structs{data->fields, values})};
    } else {
      return *this;
    }
  };
  if (kind_ == Kind::Char) raiseNo("array");
  return std::visit(pick, data_);
}

Value Value::at(std::size_t row, std::size_t column) const {
  if (row >= size_.rows)
    raise("IndexOutOfRange", {std::to_string(row), std::to_string(size_.rows)});
  if (column >= size_.columns)
    raise("IndexOutOfRange", {std::to_string(column), std::to_string(size_.columns)});
  return at(column * size_.rows + row);
}

template <class T>
std::span<const T> Value::elements(bool isRightKind, std::string_view expected) const {
  if (!isRightKind) raiseNo(expected);
  return {std::get<Elements<T>>(data_).get(), count()};
}

template <Number T>
std::span<const T> Value::numbers() const {
  const auto* const held = std::get_if<Numbers<T>>(&data_);
  if (!held) raiseNo(builtinName(kindOf<T>).text());
  return {held->get(), count()};
}

template <Number T>
T Value::number() const {
  const std::span<const T> all = numbers<T>();
  if (all.size() != 1) raiseNo(builtinName(kindOf<T>).text() + " scalar");
  return all.front();
}
template std::span<const bool> Value::numbers() const;
template std::span<const std::uint16_t> Value::numbers() const;
template std::span<const std::int32_t> Value::numbers() const;
template std::span<const double> Value::numbers() const;
template bool Value::number() const;
template std::uint16_t Value::number() const;
template std::int32_t Value::number() const;
template double Value::number() const;

const std::string& Value::text() const {
  if (kind_ != Kind::Char && !(kind_ == Kind::String && isScalar())) raiseNo("char");
  return std::get<Elements<std::string>>(data_)[0];
}

std::span<const std::string> Value::strings() const {
  return elements<std::string>(kind_ == Kind::String, "string");
}

std::span<const Value> Value::cells() const { return elements<Value>(kind_ == Kind::Cell, "cell"); }

std::span<const std::string> Value::fields() const {
  if (kind_ != Kind::Struct) raiseNo("struct");
  return *std::get<std::shared_ptr<const Structs>>(data_)->fields;
}

const Value& Value::field(std::size_t field, std::size_t position) const {
  const std::size_t width = fields().size();
  if (field >= width) raise("IndexOutOfRange", {std::to_string(field), std::to_string(width)});
  checkPosition(position);
  return std::get<std::shared_ptr<const Structs>>(data_)->values[position * width + field];
}

const Value& Value::field(std::string_view name, std::size_t position) const {
  const std::span<const std::string> names = fields();
  const auto found = std::ranges::find(names, name);
  if (found == names.end()) raise("UnknownField", {std::string(name)});
  return field(static_cast<std::size_t>(found - names.begin()), position);
}

const std::shared_ptr<const NativeObject>& Value::native() const {
  if (const auto* one = std::get_if<std::shared_ptr<const NativeObject>>(&data_)) return *one;
  if (kind_ == Kind::Object && isScalar()) return std::get<Elements<Value>>(data_)[0].native();
  raiseNo("object");
}

void Value::raiseNo(std::string_view expected) const {
  raise("WrongValue", {std::string(expected), describe()});
}

std::string Value::describe() const {
  const std::string& name = className().text();
  if (kind_ == Kind::Char) return quoted(text());
  if (isEmpty()) return name.empty() ? "an empty object" : "an empty " + name;
  if (!isScalar())
    return "a " + std::to_string(size_.rows) + "-by-" + std::to_string(size_.columns) + " " + name;
  if (kind_ == Kind::String) return quoted(text());
  return std::visit(
      [&]<class T>(const T& data) -> std::string {
        if constexpr (requires { printed(data[0]); })
          return hasClass(kind_) ? "a " + name : printed(data[0]);
        else
          return "a " + name;
      },
      data_);
}

bool operator==(const Value& a, const Value& b) {
  if (a.kind_ != b.kind_ || a.class_ != b.class_ || a.size_ != b.size_) return false;
  if (a.isEmpty() || a.data_ == b.data_) return true;
  if (a.kind_ == Kind::Object) {
    for (std::size_t i = 0; i < a.count(); ++i)
      if (!a.at(i).native()->isEqual(*b.at(i).native())) return false;
    return true;
  }
  return std::visit(
      [&]<class T>(const T& mine) {
        const T& other = std::get<T>(b.data_);
        if constexpr (requires { mine[0]; }) {
          const std::size_t count = a.kind_ == Kind::Char ? 1 : a.count();
          return std::equal(mine.get(), mine.get() + count, other.get());
        } else if constexpr (std::is_same_v<T, std::shared_ptr<const Value::Structs>>) {
          return *mine->fields == *other->fields && mine->values == other->values;
        } else {
          return true;
        }
      },
      a.data_);
}

}  // namespace tyve
