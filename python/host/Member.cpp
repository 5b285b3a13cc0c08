#include "python/host/Member.h"

#include <structmember.h>

#include <string>

#include "python/host/Call.h"
#include "python/host/Classes.h"
#include "python/host/Errors.h"
#include "python/host/FromPython.h"
#include "python/host/Object.h"
#include "python/host/ToPython.h"

namespace tyve::host {
namespace {

/// A descriptor of either kind.
struct MemberObject {
  PyObject ob_base;
  const Member* member;
  vectorcallfunc call;           // of a method
  const Parameters* parameters;  // of a method
};

const MemberObject& memberOf(PyObject* self) {
  return *reinterpret_cast<const MemberObject*>(self);
}
const Property& propertyOf(PyObject* self) {
  return static_cast<const Property&>(*memberOf(self).member);
}

PyObject* callMethod(PyObject* self, PyObject* const* arguments, std::size_t count,
                     PyObject* names) {
  return guarded([&] {
    return call(*memberOf(self).parameters, arguments,
                static_cast<std::size_t>(PyVectorcall_NARGS(count)), names)
        .release()
        .ptr();
  });
}

PyObject* bindMethod(PyObject* self, PyObject* object, PyObject*) {
  return object ? PyMethod_New(self, object) : Py_NewRef(self);
}

PyObject* getProperty(PyObject* self, PyObject* object, PyObject*) {
  if (!object) return Py_NewRef(self);
  return guarded([&] {
    if (isObject(object)) return read(propertyOf(self), valueOf(object)).release().ptr();
    return read(propertyOf(self), fromPython(object)).release().ptr();
  });
}

int setProperty(PyObject* self, PyObject* object, PyObject* value) {
  PyObject* const done = guarded([&]() -> PyObject* {
    if (!value) throw py::attribute_error("cannot delete " + py::repr(self).cast<std::string>());
    write(propertyOf(self), fromPython(object), fromPython(value));
    return Py_None;
  });
  return done ? 0 : -1;
}

void destroy(PyObject* self) {
  PyTypeObject* const type = Py_TYPE(self);
  delete memberOf(self).parameters;
  type->tp_free(self);
  Py_DECREF(type);
}

std::string qualifiedName(const Member& member) {
  return std::string(member.getClass().last()) + "." + member.getName().text();
}

PyObject* print(PyObject* self) {
  return guarded([&] {
    const char* const kind = memberOf(self).call ? "method" : "property";
    return py::str("<{} '{}' of '{}'>")
        .format(kind, textToPython(memberOf(self).member->getName().text()),
                textToPython(memberOf(self).member->getClass().text()))
        .release()
        .ptr();
  });
}

/// A getter of what is told of a member.
template <auto read>
PyObject* tell(PyObject* self, void*) {
  return guarded([&] { return py::object(read(memberOf(self))).release().ptr(); });
}
py::object nameOf(const MemberObject& self) { return textToPython(self.member->getName().text()); }
py::object qualifiedNameOf(const MemberObject& self) {
  return textToPython(qualifiedName(*self.member));
}
py::object documentationOf(const MemberObject& self) {
  return textToPython(self.member->getDocumentation());
}
/// That and the type, as a property has no signature that would tell.
py::object propertyDocumentationOf(const MemberObject& self) {
  const auto& property = static_cast<const Property&>(*self.member);
  std::string text = property.getDocumentation();
  if (property.getResult())
    text += (text.empty() ? "(" : " (") + property.getResult().text() +
            (property.isReadOnly() ? ", read-only)" : ")");
  return textToPython(text);
}
py::object signatureOf(const MemberObject& self) { return textToPython(self.parameters->print()); }
py::object classOf(const MemberObject& self) {
  PyTypeObject* const type = Classes::getInstance().get(self.member->getClass()).type;
  return py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(type));
}

PyGetSetDef methodTold[] = {{"__name__", &tell<&nameOf>, nullptr, nullptr, nullptr},
                            {"__qualname__", &tell<&qualifiedNameOf>, nullptr, nullptr, nullptr},
                            {"__doc__", &tell<&documentationOf>, nullptr, nullptr, nullptr},
                            {"__objclass__", &tell<&classOf>, nullptr, nullptr, nullptr},
                            {"__text_signature__", &tell<&signatureOf>, nullptr, nullptr, nullptr},
                            {}};
PyGetSetDef propertyTold[] = {
    {"__name__", &tell<&nameOf>, nullptr, nullptr, nullptr},
    {"__qualname__", &tell<&qualifiedNameOf>, nullptr, nullptr, nullptr},
    {"__doc__", &tell<&propertyDocumentationOf>, nullptr, nullptr, nullptr},
    {"__objclass__", &tell<&classOf>, nullptr, nullptr, nullptr},
    {}};

PyMemberDef methodMembers[] = {
    {"__vectorcalloffset__", T_PYSSIZET, offsetof(MemberObject, call), READONLY, nullptr}, {}};

PyType_Slot methodSlots[] = {{Py_tp_call, reinterpret_cast<void*>(&PyVectorcall_Call)},
                             {Py_tp_descr_get, reinterpret_cast<void*>(&bindMethod)},
                             {Py_tp_dealloc, reinterpret_cast<void*>(&destroy)},
                             {Py_tp_repr, reinterpret_cast<void*>(&print)},
                             {Py_tp_members, methodMembers},
                             {Py_tp_getset, methodTold},
                             {}};
PyType_Slot propertySlots[] = {{Py_tp_descr_get, reinterpret_cast<void*>(&getProperty)},
                               {Py_tp_descr_set, reinterpret_cast<void*>(&setProperty)},
                               {Py_tp_dealloc, reinterpret_cast<void*>(&destroy)},
                               {Py_tp_repr, reinterpret_cast<void*>(&print)},
                               {Py_tp_getset, propertyTold},
                               {}};

constexpr unsigned flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION;
PyType_Spec methodSpec = {"tyve.Method", sizeof(MemberObject), 0,
                          flags | Py_TPFLAGS_HAVE_VECTORCALL | Py_TPFLAGS_METHOD_DESCRIPTOR,
                          methodSlots};
PyType_Spec propertySpec = {"tyve.Property", sizeof(MemberObject), 0, flags, propertySlots};

/// A new descriptor, all null but for the member.
py::object makeMember(PyTypeObject* type, const Member& member) {
  auto made = py::reinterpret_steal<py::object>(type->tp_alloc(type, 0));
  if (!made) throw py::error_already_set();
  reinterpret_cast<MemberObject*>(made.ptr())->member = &member;
  return made;
}

}  // namespace

py::object makeMember(const Method& method) {
  static PyTypeObject* const type = makeType(methodSpec);
  py::object made = makeMember(type, method);
  auto& object = *reinterpret_cast<MemberObject*>(made.ptr());
  object.parameters = new Parameters(method);
  object.call = &callMethod;
  return method.isStatic() ? py::reinterpret_steal<py::object>(PyStaticMethod_New(made.ptr()))
                           : made;
}

py::object makeMember(const Property& property) {
  static PyTypeObject* const type = makeType(propertySpec);
  return makeMember(type, property);
}

}  // namespace tyve::host
