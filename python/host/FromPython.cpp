#include "python/host/FromPython.h"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "python/host/Classes.h"
#include "python/host/Object.h"

namespace tyve::host {
namespace {

constexpr int deepest = 200;  // far from the end of any thread's stack

Value convert(PyObject* object, int depth);

Value integer(PyObject* object) {
  int overflow = 0;
  const long number = PyLong_AsLongAndOverflow(object, &overflow);
  if (number == -1 && PyErr_Occurred()) throw py::error_already_set();
  using Limits = std::numeric_limits<std::int32_t>;
  if (!overflow && number >= Limits::min() && number <= Limits::max())
    return Value::scalar(static_cast<std::int32_t>(number));
  const double rounded = PyLong_AsDouble(object);
  if (rounded == -1 && PyErr_Occurred()) throw py::error_already_set();
  if (!py::int_(py::float_(rounded)).equal(py::handle(object))) {
    PyErr_SetString(PyExc_OverflowError, "int too large to be exact as a double");
    throw py::error_already_set();
  }
  return Value::scalar(rounded);
}

/// Converts items that Python code may change meanwhile, so they are held and counted anew.
template <class Visit>
void forEachItem(PyObject* list, Visit visit) {
  for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(list); ++i)
    visit(py::reinterpret_borrow<py::object>(PySequence_Fast_GET_ITEM(list, i)));
}

Value sequence(PyObject* list, int depth) {
  bool isText = true;
  forEachItem(list, [&](const py::object& item) { isText &= PyUnicode_Check(item.ptr()); });
  if (isText) {
    std::vector<std::string> texts;
    forEachItem(list, [&](const py::object& item) { texts.push_back(textOf(item.ptr())); });
    return Value::strings(std::move(texts));
  }
  std::vector<Value> values;
  forEachItem(list,
              [&](const py::object& item) { values.push_back(convert(item.ptr(), depth + 1)); });
  return Value::cell(std::move(values));
}

Value structure(PyObject* dict, int depth) {
  std::vector<std::string> fields;
  std::vector<Value> values;
  const auto items = py::reinterpret_steal<py::object>(PyDict_Items(dict));
  if (!items) throw py::error_already_set();
  forEachItem(items.ptr(), [&](const py::object& item) {
    PyObject* const key = PyTuple_GET_ITEM(item.ptr(), 0);
    if (!PyUnicode_Check(key))
      throw py::type_error("a dict needs keys of type 'str', not '" +
                           std::string(Py_TYPE(key)->tp_name) + "'");
    fields.push_back(textOf(key));
    values.push_back(convert(PyTuple_GET_ITEM(item.ptr(), 1), depth + 1));
  });
  return Value::structure(std::move(fields), std::move(values));
}

/// A UUID can only be there when its module is.
bool isUuid(PyObject* object) {
  const auto module = py::reinterpret_steal<py::object>(PyImport_GetModule(py::str("uuid").ptr()));
  return module && py::isinstance(object, py::getattr(module, "UUID", py::tuple()));
}

Value convert(PyObject* object, int depth) {
  if (depth > deepest) {
    PyErr_SetString(PyExc_RecursionError, "a list or dict is nested too deeply, or holds itself");
    throw py::error_already_set();
  }
  if (isObject(object)) return valueOf(object);
  if (PyUnicode_Check(object)) return Value::text(textOf(object));
  if (object == Py_None) return {};
  if (PyBool_Check(object)) return Value::scalar(object == Py_True);
  if (PyLong_Check(object)) {
    const HostClass* const type =
        PyLong_CheckExact(object) ? nullptr : Classes::getInstance().find(Py_TYPE(object));
    const Value number = integer(object);
    return type ? number.withClass(type->info->getName()) : number;
  }
  if (PyFloat_Check(object)) return Value::scalar(PyFloat_AS_DOUBLE(object));
  if (PyList_Check(object) || PyTuple_Check(object)) return sequence(object, depth);
  if (PyDict_Check(object)) return structure(object, depth);
  if (PyIndex_Check(object)) {
    const auto index = py::reinterpret_steal<py::object>(PyNumber_Index(object));
    if (!index) throw py::error_already_set();
    return integer(index.ptr());
  }
  if (isUuid(object)) return Value::text(textOf(py::str(object).ptr()));
  if (py::hasattr(py::type::handle_of(object), "__fspath__")) {
    const auto path = py::reinterpret_steal<py::object>(PyOS_FSPath(object));
    if (!path) throw py::error_already_set();
    if (PyUnicode_Check(path.ptr())) return Value::text(textOf(path.ptr()));
  }
  throw py::type_error("an object of type '" + std::string(Py_TYPE(object)->tp_name) +
                       "' has no form in the class system");
}

}  // namespace

std::string textOf(PyObject* text) {
  Py_ssize_t size = 0;
  const char* const data = PyUnicode_AsUTF8AndSize(text, &size);
  if (!data) throw py::error_already_set();
  return {data, static_cast<std::size_t>(size)};
}

Value fromPython(py::handle object) { return convert(object.ptr(), 0); }

}  // namespace tyve::host
