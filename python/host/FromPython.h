#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include <tyve/Value.h>

namespace tyve::host {

namespace py = pybind11;

/// What Python gives, as a value:
///
/// | Python | value |
/// |---|---|
/// | None | the empty object without a class |
/// | instance of "tyve.Object" | the object |
/// | member of an enumeration | the member |
/// | bool | logical |
/// | int, and what has `__index__` | int32 when it fits, else double |
/// | float | double |
/// | str, uuid.UUID, path as a str | row of characters |
/// | list or tuple, all of str or empty | strings |
/// | other list or tuple | cell |
/// | dict with keys of str | struct |
///
/// Throws `TypeError` for all else, `OverflowError` for an integer that no double is equal to,
/// `UnicodeEncodeError` for a text that UTF-8 cannot show, and `RecursionError` for lists and dicts
/// that are nested more than 200 deep.
Value fromPython(py::handle object);

/// A `str` in UTF-8; throws `UnicodeEncodeError` for one that UTF-8 cannot show.
std::string textOf(PyObject* text);

}  // namespace tyve::host
