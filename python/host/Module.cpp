#include <dlfcn.h>
#include <pybind11/pybind11.h>

#include <string>

#include <tyve/ClassSystem.h>
#include <tyve/Package.h>

#include "python/host/Classes.h"
#include "python/host/Describe.h"
#include "python/host/Errors.h"
#include "python/host/Object.h"

namespace tyve::host {
namespace {

[[noreturn]] void refuseImport(const std::string& reason) {
  PyErr_SetString(PyExc_ImportError, reason.c_str());
  throw py::error_already_set();
}

/// Loads a library, which is found as those are that the extension needs, and calls its entry. It
/// is never let go of, as its classes stay.
void load(const std::string& library, const std::string& entry) {
  void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) refuseImport(dlerror());
  void* const symbol = dlsym(handle, entry.c_str());
  if (!symbol) refuseImport(library + " has no entry " + entry);
  reinterpret_cast<void (*)()>(symbol)();
}

/// The Python classes of a package by their names, in the order of their registration.
py::dict classes(const std::string& packageName) {
  Package* const package = ClassSystem::getInstance().findPackage(intern(packageName));
  if (!package) refuseImport("the class system has no package " + packageName);
  py::dict all;
  for (const COSClassInfo* info : package->getClasses()) {
    const HostClass& made = Classes::getInstance().get(info->getName());
    all[py::str(std::string(info->getName().last()))] =
        py::handle(reinterpret_cast<PyObject*>(made.type));
  }
  return all;
}

}  // namespace
}  // namespace tyve::host

PYBIND11_MODULE(_host, module) {
  using namespace tyve::host;
  module.doc() = "The class system as Python sees it.";
  module.attr("Object") = py::handle(reinterpret_cast<PyObject*>(objectType()));
  module.def("load", &load, py::arg("library"), py::arg("entry"));
  module.def("classes", &classes, py::arg("package"));
  module.def("describe", &describe, py::arg("name"));
  py::register_exception_translator([](std::exception_ptr failure) {
    try {
      std::rethrow_exception(failure);
    } catch (const tyve::Exception& error) {
      setError(error);
    }
  });
}
