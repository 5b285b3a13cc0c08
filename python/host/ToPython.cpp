#include "python/host/ToPython.h"

#include <cstdint>

#include "python/host/Classes.h"
#include "python/host/Object.h"

namespace tyve::host {
namespace {

template <class Make>
py::list listOf(std::size_t count, Make make) {
  py::list all(count);
  for (std::size_t i = 0; i < count; ++i) all[i] = make(i);
  return all;
}

py::object numberToPython(bool number) { return py::bool_(number); }
py::object numberToPython(double number) { return py::float_(number); }
template <class Integer>
py::object numberToPython(Integer number) {
  return py::int_(number);
}

template <Number T>
py::object numbersToPython(const Value& value) {
  const auto numbers = value.numbers<T>();
  if (value.isScalar()) return numberToPython(numbers[0]);
  return listOf(numbers.size(), [&](std::size_t i) { return numberToPython(numbers[i]); });
}

py::object structToPython(const Value& value, std::size_t position) {
  const auto fields = value.fields();
  py::dict content;
  for (std::size_t i = 0; i < fields.size(); ++i)
    content[textToPython(fields[i])] = toPython(value.field(i, position));
  return content;
}

py::object membersToPython(const Value& value) {
  const HostClass& type = Classes::getInstance().get(value.className());
  const auto memberOf = [&](std::int32_t number) {
    for (const auto& [known, member] : type.members)
      if (known == number) return py::reinterpret_borrow<py::object>(member);
    return py::handle(reinterpret_cast<PyObject*>(type.type))(number);  // raises that there is none
  };
  const auto numbers = value.numbers<std::int32_t>();
  if (value.isScalar()) return memberOf(numbers[0]);
  return listOf(numbers.size(), [&](std::size_t i) { return memberOf(numbers[i]); });
}

}  // namespace

py::str textToPython(std::string_view text) {
  auto made = py::reinterpret_steal<py::str>(
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
  if (!made) throw py::error_already_set();
  return made;
}

py::object toPython(const Value& value) {
  switch (value.kind()) {
    case Kind::Logical:
      return numbersToPython<bool>(value);
    case Kind::UInt16:
      return numbersToPython<std::uint16_t>(value);
    case Kind::Int32:
      return numbersToPython<std::int32_t>(value);
    case Kind::Double:
      return numbersToPython<double>(value);
    case Kind::Char:
      return textToPython(value.text());
    case Kind::String:
      if (value.isScalar()) return textToPython(value.text());
      return listOf(value.count(), [&](std::size_t i) { return textToPython(value.strings()[i]); });
    case Kind::Cell:
      return listOf(value.count(), [&](std::size_t i) { return toPython(value.cells()[i]); });
    case Kind::Struct:
      if (value.isScalar()) return structToPython(value, 0);
      return listOf(value.count(), [&](std::size_t i) { return structToPython(value, i); });
    case Kind::Enumeration:
      return membersToPython(value);
    case Kind::Object:
      if (value.isScalar())
        return makeObject(Classes::getInstance().get(value.className()).type, value);
      return listOf(value.count(), [&](std::size_t i) { return toPython(value.at(i)); });
  }
  return py::none();  // there is no other kind
}

py::object listToPython(const Value& value) {
  py::object made = toPython(value);
  if (value.isScalar() && !value.is(Kind::Cell))
    made = listOf(1, [&](std::size_t) { return made; });
  return made;
}

}  // namespace tyve::host
