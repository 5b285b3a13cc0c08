#pragma once

#include <pybind11/pybind11.h>

#include <tyve/Member.h>

namespace tyve::host {

namespace py = pybind11;

/// The Python descriptors of what classes declare. A method is called by the interpreter without a
/// bound object or a tuple in between; a static one comes as Python's own `staticmethod`. The
/// members live as long as the class system.
py::object makeMember(const Method& method);
py::object makeMember(const Property& property);

}  // namespace tyve::host
