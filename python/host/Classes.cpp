#include "python/host/Classes.h"

#include <tyve/ClassSystem.h>

#include "python/host/Member.h"
#include "python/host/Object.h"
#include "python/host/ToPython.h"

namespace tyve::host {
namespace {

py::str moduleOf(const COSClassInfo& info) { return textToPython(info.getName().parent().text()); }

/// Adds the methods and properties that the class declares, by `add(name, member)`.
template <class Add>
void addMembers(const COSClassInfo& info, Add add) {
  for (const auto& property : info.getProperties())
    add(textToPython(property->getName().text()), makeMember(*property));
  for (const auto& method : info.getMethods())
    add(textToPython(method->getName().text()), makeMember(*method));
}

py::object makeEnumeration(const COSClassInfo& info) {
  py::list members;
  for (const auto& [name, value] : info.getEnumerationMembers())
    members.append(py::make_tuple(textToPython(name.text()), value));
  py::object made = py::module_::import("tyve.enumeration")
                        .attr("Enumeration")(textToPython(info.getName().last()), members,
                                             py::arg("module") = moduleOf(info));
  made.attr("__doc__") = textToPython(info.getDocumentation());
  addMembers(info, [&](const py::str& name, const py::object& member) {
    py::setattr(made, name, member);
  });
  return made;
}

}  // namespace

Classes& Classes::getInstance() {
  static Classes& instance = *new Classes;  // instances may be there when the interpreter ends
  return instance;
}

const HostClass* Classes::find(PyTypeObject* type) const noexcept {
  const auto found = byType_.find(type);
  return found == byType_.end() ? nullptr : found->second;
}

const HostClass& Classes::get(Name name) {
  const auto known = byName_.find(name);
  if (known != byName_.end()) return *known->second;
  std::unique_ptr<HostClass> made = make(ClassSystem::getInstance().getClass(name));
  // Python may have let another thread make it meanwhile.
  const auto [place, isNew] = byName_.try_emplace(name, std::move(made));
  if (isNew) byType_.emplace(place->second->type, place->second.get());
  return *place->second;
}

std::unique_ptr<HostClass> Classes::make(const COSClassInfo& info) {
  auto made = std::make_unique<HostClass>();
  made->info = &info;
  if (const Method* const constructor = info.getConstructor())
    made->constructor.emplace(*constructor);
  py::object type = info.isEnumeration() ? makeEnumeration(info) : makeClass(info);
  for (const auto& member : info.getEnumerationMembers())
    made->members.emplace_back(member.value, type(member.value).release().ptr());
  made->type = reinterpret_cast<PyTypeObject*>(type.release().ptr());
  return made;
}

py::object Classes::makeClass(const COSClassInfo& info) {
  const COSClassInfo* const superclass = info.getSuperclass();
  PyTypeObject* const base = superclass ? get(superclass->getName()).type : objectType();
  const py::str name = textToPython(info.getName().last());
  const py::str documentation = textToPython(info.getDocumentation());
  py::dict content;
  content["__module__"] = moduleOf(info);
  content["__slots__"] = py::tuple();
  // Python takes the signature from a text that begins with it, and keeps that apart.
  if (const Method* const constructor = info.getConstructor())
    content["__doc__"] =
        py::str("{}{}\n--\n\n{}")
            .format(name, textToPython(Parameters(*constructor).print()), documentation);
  addMembers(info, [&](const py::str& memberName, const py::object& member) {
    content[memberName] = member;
  });
  isMakingClass_ = true;
  PyObject* const type =
      PyObject_CallFunction(reinterpret_cast<PyObject*>(&PyType_Type), "O(O)O", name.ptr(),
                            reinterpret_cast<PyObject*>(base), content.ptr());
  isMakingClass_ = false;
  if (!type) throw py::error_already_set();
  py::object made = py::reinterpret_steal<py::object>(type);
  made.attr("__doc__") = documentation;
  return made;
}

}  // namespace tyve::host
