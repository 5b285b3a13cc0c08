#include "python/host/Describe.h"

#include <tyve/ClassSystem.h>

#include "python/host/ToPython.h"

namespace tyve::host {
namespace {

py::str textOf(Name name) { return textToPython(name.text()); }

py::dict describe(const Member& member) {
  py::dict told;
  told["name"] = textOf(member.getName());
  told["documentation"] = textToPython(member.getDocumentation());
  return told;
}

py::dict describe(const Property& property) {
  py::dict told = describe(static_cast<const Member&>(property));
  told["type"] = textOf(property.getType());
  told["result"] = textOf(property.getResult());
  told["read_only"] = property.isReadOnly();
  return told;
}

py::dict describe(const Method& method) {
  const Signature& signature = method.getSignature();
  py::list words;
  for (const Name word : signature.arguments) words.append(textOf(word));
  py::dict told = describe(static_cast<const Member&>(method));
  told["argument_names"] = textToPython(signature.argumentNames);
  told["arguments"] = words;
  told["optional"] = signature.optional;
  told["result"] = textOf(signature.result);
  told["array"] = signature.isArray;
  told["static"] = method.isStatic();
  return told;
}

}  // namespace

py::dict describe(const std::string& name) {
  const COSClassInfo& info = ClassSystem::getInstance().getClass(intern(name));
  py::list properties, methods, members;
  for (const auto& property : info.getProperties()) properties.append(describe(*property));
  for (const auto& method : info.getMethods()) methods.append(describe(*method));
  for (const auto& member : info.getEnumerationMembers())
    members.append(py::make_tuple(textOf(member.name), member.value));
  const Name superclass = info.getSuperclassName();
  const Method* const constructor = info.getConstructor();
  py::dict told;
  told["name"] = textOf(info.getName());
  told["superclass"] = superclass ? textOf(superclass) : py::object(py::none());
  told["documentation"] = textToPython(info.getDocumentation());
  told["constructor"] = constructor ? describe(*constructor) : py::object(py::none());
  told["properties"] = properties;
  told["methods"] = methods;
  told["members"] = members;
  return told;
}

}  // namespace tyve::host
