#include <thread>

#include "tests/bindings/HostTest.h"

namespace torvan::datamodel {
namespace {

using DescriptionTest = HostTest;

TEST_F(DescriptionTest, WhatMayTakeLongSaysSo) {
  std::string names;
  for (const tyve::COSClassInfo* info :
       tyve::ClassSystem::getInstance().findPackage(intern("torvan.session"))->getClasses())
    for (const auto& method : info->getMethods())
      if (method->isLong()) names += method->getName().text() + " ";
  EXPECT_EQ(names, "undo redo reclaim save load import_values rollback create_array_type ");
}

TEST_F(DescriptionTest, PackagesAndClassesAreThereOnceHoweverOftenTheyAreRegistered) {
  for (const bool isPerCall : {true, false}) {
    tyve::omSetTyveUsingUSM(isPerCall);
    std::vector<std::jthread> callers;
    for (int i = 0; i < 4; ++i) callers.emplace_back(HBInitialize_torvan_datamodel);
  }
  HBTerminate_torvan_datamodel();

  auto& classSystem = tyve::ClassSystem::getInstance();
  EXPECT_EQ(classSystem.getPackages().size(), 2U);
  const std::pair<const char*, std::size_t> packages[] = {
      {"orb.zero", 9}, {"orb.zero.meta", 11}, {"torvan.datamodel", 25}, {"torvan.session", 7}};
  for (const auto& [name, classes] : packages)
    EXPECT_EQ(classSystem.findPackage(intern(name))->getClasses().size(), classes);
}

}  // namespace
}  // namespace torvan::datamodel
