#include "python/host/Errors.h"

#include "python/host/ToPython.h"

namespace tyve::host {

void setError(const Exception& error) {
  try {
    py::tuple arguments(error.getArguments().size());
    for (std::size_t i = 0; i < arguments.size(); ++i)
      arguments[i] = textToPython(error.getArguments()[i]);
    const py::object made =
        py::module_::import("tyve.errors")
            .attr("error_of")(textToPython(error.getText()), textToPython(error.getCatalog()),
                              textToPython(error.getIdentifier()), arguments);
    PyErr_SetObject(py::type::handle_of(made).ptr(), made.ptr());
  } catch (py::error_already_set& failure) {
    failure.restore();
  }
}

PyTypeObject* makeType(PyType_Spec& spec) {
  PyObject* const type = PyType_FromSpec(&spec);
  if (!type) throw py::error_already_set();
  return reinterpret_cast<PyTypeObject*>(type);
}

}  // namespace tyve::host
