#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <orb/zero/hb/HostObject.h>
#include <torvan/bindings/torvan_datamodelPackage.h>
#include <torvan/datamodel.h>
#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>

#include "tests/support/Failure.h"

namespace torvan::datamodel {

using tyve::intern;
using Host = tyve::Value;

/// Speaks to the library as a host does: by names and host values.
class HostTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { HBInitialize_torvan_datamodel(); }

  static tyve::Name modelName(std::string_view name) {
    return intern("torvan.datamodel." + std::string(name));
  }
  static const tyve::COSClassInfo& classNamed(tyve::Name name) {
    return tyve::ClassSystem::getInstance().getClass(name);
  }
  static Host construct(std::string_view name, std::initializer_list<Host> arguments) {
    return classNamed(modelName(name)).construct(arguments);
  }
  static Host call(const Host& object, std::string_view method, std::vector<Host> arguments = {}) {
    arguments.insert(arguments.begin(), object);
    return classNamed(object.className()).getMethod(intern(method)).call(arguments);
  }
  static Host get(const Host& object, std::string_view property) {
    return classNamed(object.className()).getProperty(intern(property)).get(object);
  }
  static void set(const Host& object, std::string_view property, const Host& value) {
    classNamed(object.className()).getProperty(intern(property)).set(object, value);
  }
  static Host number(std::int32_t value) { return Host::scalar(value); }
  static Host text(std::string value) { return Host::text(std::move(value)); }
  static Host empty(std::string_view name) { return Host::empty(modelName(name)); }
  static Host host(const ModelElement& element) { return orb::zero::hb::toHost(element, {}); }
  /// What is raised; of the host's class system, behind "other ".
  template <class Call>
  static std::string failureOf(Call failing) {
    return tests::failureOf<tyve::Exception>(failing, "orb0:messages");
  }
  static std::string failure(std::string_view name, std::initializer_list<Host> given) {
    return failureOf([&] { construct(name, given); });
  }

  Session session;
  Host model = orb::zero::hb::toHost(session.model());
  PowerSetType sets = session.typeFactory()->createPowerSetType("P", {"a", "b", "b"});
  ArrayType arrays = session.typeFactory()->createArrayType("A", sets, 2);
};

}  // namespace torvan::datamodel
