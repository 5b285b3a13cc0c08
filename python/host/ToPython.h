#pragma once

#include <pybind11/pybind11.h>

#include <string_view>

#include <tyve/Value.h>

namespace tyve::host {

namespace py = pybind11;

/// A value as Python shows it:
///
/// | value | Python |
/// |---|---|
/// | logical, uint16, int32, double | bool, int, float; an array is a list of them, by columns |
/// | row of characters, one string | str |
/// | strings | list of str |
/// | cell | list |
/// | struct | dict; an array is a list of them |
/// | member of an enumeration | the member; an array is a list of them |
/// | object | an instance of its class; an array is a list of them |
/// | empty object | an empty list |
///
/// Raises "UnknownClass" for an object whose class is not registered.
py::object toPython(const Value& value);
/// The same, but a list also of one.
py::object listToPython(const Value& value);

/// A text in UTF-8; what is not shows as replacement characters.
py::str textToPython(std::string_view text);

}  // namespace tyve::host
