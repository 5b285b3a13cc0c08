#pragma once

#include <pybind11/pybind11.h>

#include <new>

#include <tyve/Exception.h>

namespace tyve::host {

namespace py = pybind11;

/// Sets the Python error that an exception of the class system becomes.
void setError(const Exception& error);

/// What Python calls: the C++ failure of `call` becomes a Python error, and null is returned. It
/// lets the unwinding of a thread that Python ends pass.
template <class Call>
PyObject* guarded(Call call) {
  try {
    return call();
  } catch (const Exception& error) {
    setError(error);
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const py::builtin_exception& error) {
    error.set_error();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
  return nullptr;
}

/// A class of the extension, from its description; it is never given back.
PyTypeObject* makeType(PyType_Spec& spec);

}  // namespace tyve::host
