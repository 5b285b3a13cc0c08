#pragma once

#include <pybind11/pybind11.h>

#include <tyve/Value.h>

namespace tyve::host {

namespace py = pybind11;

/// An instance of "tyve.Object": the object that the value is. The Python class of an object is
/// found by its class, see `Classes`.
struct Object {
  PyObject ob_base;
  PyObject* weakReferences;
  Value value;
};

/// The root of the Python classes of objects, made by the first call.
PyTypeObject* objectType();

inline bool isObject(PyObject* object) {
  static PyTypeObject* const type = objectType();
  return PyObject_TypeCheck(object, type);
}
/// What an instance of the root class holds.
inline const Value& valueOf(PyObject* object) {
  return reinterpret_cast<const Object*>(object)->value;
}

/// An instance of a class that is derived from the root.
py::object makeObject(PyTypeObject* type, Value value);

}  // namespace tyve::host
