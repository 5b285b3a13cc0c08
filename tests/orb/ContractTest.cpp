#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

template <class X>
class ContractTest : public SessionTest {};

template <class... X>
testing::Types<X...> testedClasses(ClassList<X...>);
TYPED_TEST_SUITE(ContractTest, decltype(testedClasses(ModelClasses())));

TYPED_TEST(ContractTest, CreatesUnsetElementOrRefuses) {
  const meta::ClassInfo& type = TypeParam::metaClass();
  const orb::zero::uuid id = this->model.newUuid();
  if (type.isAbstract()) {
    EXPECT_EQ(failureOf([&] { TypeParam::create(this->model, id); }), "InvalidValue");
    EXPECT_EQ(failureOf([&] { typename TypeParam::Builder builder(this->model); }), "InvalidValue");
    EXPECT_EQ(this->model.size(), 0U);
    return;
  }
  const TypeParam element = TypeParam::create(this->model, id);
  EXPECT_EQ(element->getUuid(), id);
  EXPECT_EQ(element->getMetaClass(), type);
  EXPECT_TRUE(element->getModel() == this->model);
  EXPECT_TRUE(element->This() == element);
  EXPECT_FALSE(element->getContainer());
  for (const Property* property : type.all) {
    EXPECT_FALSE(element->isGiven(property->position));
    EXPECT_TRUE(targetsOf(element, *property).empty());
  }
}

TYPED_TEST(ContractTest, CreationIsUndone) {
  if (TypeParam::metaClass().isAbstract()) {
    EXPECT_EQ(failureOf([&] { typename TypeParam::Builder builder(this->model); }), "InvalidValue");
    return;
  }
  const orb::zero::uuid id = this->model.newUuid();
  TypeParam created, built;
  {
    const Transaction transaction(this->model);
    created = TypeParam::create(this->model, id);
    built = typename TypeParam::Builder(this->model).create();
    EXPECT_EQ(this->model.size(), 2U);
  }
  EXPECT_FALSE(created || built);
  EXPECT_EQ(this->model.size(), 0U);
  EXPECT_FALSE(this->model.find(id));
  EXPECT_TRUE(TypeParam::create(this->model, id));
}

}  // namespace
}  // namespace torvan::datamodel
