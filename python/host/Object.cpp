#include "python/host/Object.h"

#include <structmember.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <tyve/ClassSystem.h>

#include "python/host/Call.h"
#include "python/host/Classes.h"
#include "python/host/Domains.h"
#include "python/host/Errors.h"
#include "python/host/ToPython.h"

namespace tyve::host {
namespace {

PyObject* construct(PyTypeObject* type, PyObject* given, PyObject* named) {
  return guarded([&] {
    const HostClass* const known = Classes::getInstance().find(type);
    if (!known)
      throw py::type_error("cannot create '" + std::string(type->tp_name) + "' instances");
    if (!known->constructor) raise("AbstractClass", {known->info->getName().text()});
    std::vector<PyObject*> arguments;  // those by place, then those by name
    for (const py::handle argument : py::reinterpret_borrow<py::tuple>(given))
      arguments.push_back(argument.ptr());
    py::list names;
    if (named)
      for (const auto& [name, argument] : py::reinterpret_borrow<py::dict>(named)) {
        names.append(name);
        arguments.push_back(argument.ptr());
      }
    return call(*known->constructor, arguments.data(), arguments.size() - names.size(),
                py::tuple(names).ptr())
        .release()
        .ptr();
  });
}

void destroy(PyObject* self) {
  auto* const object = reinterpret_cast<Object*>(self);
  PyTypeObject* const type = Py_TYPE(self);
  if (object->weakReferences) PyObject_ClearWeakRefs(self);
  Domains::getInstance().drop(std::move(object->value));
  std::destroy_at(&object->value);
  type->tp_free(self);
  Py_DECREF(type);  // which each instance of a class made at run time holds
}

PyObject* print(PyObject* self) {
  return guarded([&] {
    const Value& value = valueOf(self);
    Domains::getInstance().await(value);
    const COSClassInfo& info = ClassSystem::getInstance().getClass(value.className());
    return textToPython(info.print(value)).release().ptr();
  });
}

PyObject* compare(PyObject* self, PyObject* other, int operation) {
  if ((operation != Py_EQ && operation != Py_NE) || !isObject(other)) Py_RETURN_NOTIMPLEMENTED;
  return guarded([&] {
    const Value both[] = {valueOf(self), valueOf(other)};
    Domains::getInstance().await(both);
    return PyBool_FromLong((both[0] == both[1]) == (operation == Py_EQ));
  });
}

/// Asks the native object for a number; -1 when it cannot be asked.
template <class Ask>
auto ask(PyObject* self, Ask read) {
  std::invoke_result_t<Ask, const NativeObject&> answer = -1;
  guarded([&] {
    Domains::getInstance().await(valueOf(self));
    answer = read(*valueOf(self).native());
    return self;
  });
  return answer;
}

Py_hash_t hash(PyObject* self) {
  return ask(self, [](const NativeObject& native) {
    const auto code = static_cast<Py_hash_t>(native.hash());
    return code == -1 ? -2 : code;  // -1 tells of an error
  });
}

int isValid(PyObject* self) {
  return ask(self, [](const NativeObject& native) { return static_cast<int>(native.isValid()); });
}

PyObject* refusePickling(PyObject* self, PyObject*) {
  return PyErr_Format(PyExc_TypeError, "cannot pickle '%s' object", Py_TYPE(self)->tp_name);
}

/// What comes from the class system is always of its classes, so one of Python's own would be
/// lost.
PyObject* refuseSubclass(PyObject* type, PyObject*, PyObject*) {
  if (Classes::getInstance().isMakingClass()) Py_RETURN_NONE;
  return PyErr_Format(PyExc_TypeError, "'%s': classes of objects cannot be derived from",
                      reinterpret_cast<PyTypeObject*>(type)->tp_name);
}

PyMethodDef methods[] = {
    {"__reduce_ex__", &refusePickling, METH_O, nullptr},
    {"__init_subclass__",
     reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&refuseSubclass)),
     METH_VARARGS | METH_KEYWORDS | METH_CLASS, nullptr},
    {}};

PyMemberDef members[] = {
    {"__weaklistoffset__", T_PYSSIZET, offsetof(Object, weakReferences), READONLY, nullptr}, {}};

PyType_Slot slots[] = {
    {Py_tp_doc, const_cast<char*>("An object of the class system. It is equal to every other one "
                                  "that stands for the same, and true while that is there.")},
    {Py_tp_new, reinterpret_cast<void*>(&construct)},
    {Py_tp_dealloc, reinterpret_cast<void*>(&destroy)},
    {Py_tp_repr, reinterpret_cast<void*>(&print)},
    {Py_tp_richcompare, reinterpret_cast<void*>(&compare)},
    {Py_tp_hash, reinterpret_cast<void*>(&hash)},
    {Py_nb_bool, reinterpret_cast<void*>(&isValid)},
    {Py_tp_methods, methods},
    {Py_tp_members, members},
    {}};

PyType_Spec spec = {"tyve.Object", sizeof(Object), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE,
                    slots};

}  // namespace

PyTypeObject* objectType() {
  static PyTypeObject* const type = makeType(spec);
  return type;
}

py::object makeObject(PyTypeObject* type, Value value) {
  auto object = py::reinterpret_steal<py::object>(type->tp_alloc(type, 0));
  if (!object) throw py::error_already_set();
  std::construct_at(&reinterpret_cast<Object*>(object.ptr())->value, std::move(value));
  return object;
}

}  // namespace tyve::host
