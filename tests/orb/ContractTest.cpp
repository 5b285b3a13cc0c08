#include <array>
#include <utility>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

// What saved models and scripts rely on, and what therefore never changes.
//   class       abstract? name : superclass UUID
//   property    class.name position owned? type, [] for several, [key] for keyed; flags, UUID
constexpr std::string_view declarations[] = {
    "Array : IndexableValue e82ced39-91eb-3b29-a08e-4a7d295dd66d",
    "Array.values 2 owned ArrayElem[index] f88e817b-19fe-3120-92de-a9a57f9e0718",
    "ArrayElem : ModelElement e0cce470-c4c4-302a-9267-db1bfbbee8d2",
    "ArrayElem.index 1 value O U RO Tr ND 9d376a34-0db9-357f-af02-2f9f64d3f811",
    "ArrayElem.value 2 LatticeValue O U c99c717c-0168-32b7-a1df-067ff8f76095",
    "ArrayType : LatticeType f34c7b43-eb13-324e-8abe-4bfd2aeae3e9",
    "ArrayType.elemType 5 LatticeType O U NM 0aad053c-7848-37c3-a883-bb8c1cf8e63c",
    "Conditional : Expression b3ec7982-851f-3e02-a28a-d4d383c1eae4",
    "Conditional.ctrlExpr 2 Expression O U NM 0195034d-93b6-3031-b51c-d9e8d0c9166f",
    "Conditional.operandTrue 3 Term O U NM d9444139-d193-3ee1-a06b-75d705c84bf3",
    "Conditional.operandFalse 4 Term O U NM 007f5bed-b225-3d82-a122-87ff6216ad4e",
    "Equation : ModelElement 68fd5782-f572-3d28-81df-e21ec45698eb",
    "Equation.lhs 1 LExpression O U 97978b35-0356-3860-bbd0-9622d9112353",
    "Equation.rhs 2 Term O U 74a3fec6-c008-31e6-8917-71a5e7cfa0b0",
    "abstract Expression : Term 44f547bb-b142-3091-89a0-1cd1d31c7308",
    "FieldElem : ModelElement 3ef84786-8ca2-378a-8265-8f4819ae498b",
    "FieldElem.name 1 value O U RO Tr ND 840147cb-8912-3cbc-ae01-fad6fb2617fd",
    "FieldElem.value 2 LatticeValue O U 8fb5b092-1368-35a6-9551-d250595de13c",
    "FieldType : ModelElement dd00a967-1253-3fa7-a0ad-f32546b2f999",
    "FieldType.name 1 value O U NM ND 35ed794c-25dd-3f12-ab78-d5b4cd994b37",
    "FieldType.elemType 2 LatticeType O U NM b1f8162c-2579-30d6-96a2-628324198b06",
    "IndexRef : LExpression 542be353-f6e9-3655-81af-7d81e9b45d72",
    "IndexRef.expr 2 LExpression O U NM 8bbcfc28-aa39-3e0b-80c4-3b9707c2e7dc",
    "IndexRef.startIndex 3 value O U NM ND f43e33b6-ade8-370a-9788-d6f8fcec6b76",
    "IndexRef.endIndex 4 value O U NM ND 33faf7c5-3945-3f1f-837f-a59b858086c5",
    "abstract IndexableValue : LatticeValue 009181ef-dfd6-37d8-b107-6b5b7a61007d",
    "Join : Expression 281a888f-375b-3e1d-a5a2-0adcdceed927",
    "Join.operands 2 Term[] O NM c02087b8-dbc0-3d40-9b0f-cd9bb3ded3df",
    "abstract LExpression : Expression 389dd4f2-e975-3de4-8c24-c9fe2d07a88c",
    "abstract LatticeType : ModelElement 76c0b034-0399-36e8-9ba4-68e19f708e15",
    "LatticeType.name 1 value O U NM ND 204d0ad3-3616-360b-8bd6-1f39d5d9bcf6",
    "LatticeType.numElems 2 value O U NM ND 3b901a7f-7025-31f5-8655-f95d629472df",
    "LatticeType.top 3 LatticeValue O U NM 74759111-c957-31d4-9e74-41c143160b46",
    "LatticeType.bottom 4 LatticeValue O U NM af8c142c-23af-30e1-9ea0-fce9248d0780",
    "abstract LatticeValue : Term a1b030f5-3d6e-3fd0-abce-90d5d238db33",
    "Meet : Expression 427cf1d4-a92f-3e0b-9986-6e2530789850",
    "Meet.operands 2 Term[] O NM 391ae928-5e07-32f2-9eb7-ce35c00cff4d",
    "PowerSet : IndexableValue 677699d2-89d0-3790-a673-1b2d293023a2",
    "PowerSet.value 2 value O U ND f4b6737d-4261-33d9-b0c5-98aa3053a6f3",
    "PowerSetType : LatticeType 7ef0fc9b-2bdf-3302-a4d9-7da02b233986",
    "PowerSetType.universe 5 value[] O NM c6742080-e70b-3f37-a440-00f3fb21f732",
    "Prune : Expression 95eccb4d-c0c5-3d8e-8428-e02c83ae216f",
    "Prune.expr 2 Expression O U NM 97dcc41b-d7dc-30e3-91f9-9614c64b84e1",
    "Prune.field 3 value[] O NM 99befb74-f31b-3e60-8f40-0d55b33d2c2e",
    "Struct : LatticeValue 096f485a-ee30-3f68-8ae0-88f63ff96674",
    "Struct.values 2 owned FieldElem[name] c1b68a6c-272d-341d-aa68-0e311a9387cf",
    "StructRef : LExpression 0f777b59-5599-3706-a179-62547e0ced0e",
    "StructRef.expr 2 LExpression O U NM 9b04b840-7a0c-39ae-b94f-c5305f8ae591",
    "StructRef.field 3 value O U NM ND cf616786-88bb-306a-8817-46a9b3170c49",
    "StructType : LatticeType a25be7f4-c58f-3411-bb04-269ef1caac7d",
    "StructType.fields 5 owned FieldType[name] NM 31e1c15f-1eee-3f50-a7c1-2771c10214e8",
    "System : ModelElement f657beea-ce4e-39c2-bd39-fc68e7a38959",
    "System.equations 1 owned Equation[] O f2c66ce1-b92d-3251-ae69-573464c92e45",
    "abstract Term : ModelElement a216d2be-4290-3237-9058-36305621e5f9",
    "Term.type 1 LatticeType O U NM 1865689c-5459-30ff-825e-f104f9f0306f",
    "Variable : LExpression dad3b5dc-56b9-3729-8430-8d673ca0d597",
    "Variable.name 2 value O U NM ND 608071fd-1cd3-3457-a84a-8f5025565dee",
};

std::string_view simpleName(const meta::ClassInfo& type) {
  return type.name.substr(type.name.rfind('.') + 1);
}

std::string declarationOf(const meta::ClassInfo& type) {
  return (type.isAbstract() ? "abstract " : "") + std::string(simpleName(type)) + " : " +
         std::string(simpleName(*type.superclass)) + ' ' + to_string(type.id);
}

std::string declarationOf(const meta::ClassInfo& type, const Property& property) {
  std::string text = std::string(simpleName(type)) + '.' + std::string(property.name) + ' ' +
                     std::to_string(property.position) + (property.isOwning ? " owned " : " ") +
                     std::string(property.type ? simpleName(property.type()) : "value");
  if (property.kind != meta::ValueKind::Single) text += '[' + std::string(property.key) + ']';
  static constexpr std::pair<meta::Flag, const char*> flags[] = {
      {meta::Ordered, " O"},    {meta::Unique, " U"},     {meta::ReadOnly, " RO"},
      {meta::Transient, " Tr"}, {meta::NoMutator, " NM"}, {meta::NoDefault, " ND"}};
  for (const auto& [flag, letters] : flags)
    if (property.flags & flag) text += letters;
  return text + ' ' + to_string(property.id);
}

TEST(DeclarationTest, ClassesAreAsDeclared) {
  std::vector<std::string> actual;
  for (const meta::ClassInfo* type : modelClasses()) {
    actual.push_back(declarationOf(*type));
    for (const Property& property : type->own) actual.push_back(declarationOf(*type, property));
  }
  EXPECT_EQ(actual, std::vector<std::string>(std::begin(declarations), std::end(declarations)));
}

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
