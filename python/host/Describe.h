#pragma once

#include <pybind11/pybind11.h>

#include <string>

namespace tyve::host {

namespace py = pybind11;

/// The description of a class, whole, as dicts and lists: "name", "superclass" (None without one),
/// "documentation", "constructor" (None for an abstract class), "properties", "methods", "members"
/// (of an enumeration: name and value). Raises "UnknownClass" when there is none of this name.
py::dict describe(const std::string& name);

}  // namespace tyve::host
