#include <utility>

#include <orb/zero/meta/AbstractMetaPackage.h>
#include <orb/zero/meta/Argument.h>
#include <orb/zero/meta/EnumLiteral.h>
#include <orb/zero/meta/Operation.h>
#include <orb/zero/meta/Property.h>
#include <boost/uuid/uuid_io.hpp>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using meta::MetaRegistry;
using orb::zero::toUtf8;

// What saved models and scripts rely on, and what therefore never changes.
//   class       abstract? name : superclass UUID
//   property    class.name position owned? type, [] for several, [key] for keyed; flags, UUID
//   operation   class.name(arguments) result; [] for several, A for abstract
constexpr std::string_view declarations[] = {
    "Array : IndexableValue e82ced39-91eb-3b29-a08e-4a7d295dd66d",
    "Array.values 2 owned ArrayElem[index] f88e817b-19fe-3120-92de-a9a57f9e0718",
    "ArrayElem : ModelElement e0cce470-c4c4-302a-9267-db1bfbbee8d2",
    "ArrayElem.index 1 UInteger16 O U RO Tr ND 9d376a34-0db9-357f-af02-2f9f64d3f811",
    "ArrayElem.value 2 LatticeValue O U c99c717c-0168-32b7-a1df-067ff8f76095",
    "ArrayElem.ref() LatticeValuePtr",
    "ArrayType : LatticeType f34c7b43-eb13-324e-8abe-4bfd2aeae3e9",
    "ArrayType.elemType 5 LatticeType O U NM 0aad053c-7848-37c3-a883-bb8c1cf8e63c",
    "Conditional : Expression b3ec7982-851f-3e02-a28a-d4d383c1eae4",
    "Conditional.ctrlExpr 2 Expression O U NM 0195034d-93b6-3031-b51c-d9e8d0c9166f",
    "Conditional.operandTrue 3 Term O U NM d9444139-d193-3ee1-a06b-75d705c84bf3",
    "Conditional.operandFalse 4 Term O U NM 007f5bed-b225-3d82-a122-87ff6216ad4e",
    "Equation : ModelElement 68fd5782-f572-3d28-81df-e21ec45698eb",
    "Equation.lhs 1 LExpression O U 97978b35-0356-3860-bbd0-9622d9112353",
    "Equation.rhs 2 Term O U 74a3fec6-c008-31e6-8917-71a5e7cfa0b0",
    "Equation.print() StdString",
    "Equation.getLhsVariable() Variable",
    "Equation.getRhsVariables() Variable[]",
    "abstract Expression : Term 44f547bb-b142-3091-89a0-1cd1d31c7308",
    "FieldElem : ModelElement 3ef84786-8ca2-378a-8265-8f4819ae498b",
    "FieldElem.name 1 StdString O U RO Tr ND 840147cb-8912-3cbc-ae01-fad6fb2617fd",
    "FieldElem.value 2 LatticeValue O U 8fb5b092-1368-35a6-9551-d250595de13c",
    "FieldElem.ref() LatticeValuePtr",
    "FieldType : ModelElement dd00a967-1253-3fa7-a0ad-f32546b2f999",
    "FieldType.name 1 StdString O U NM ND 35ed794c-25dd-3f12-ab78-d5b4cd994b37",
    "FieldType.elemType 2 LatticeType O U NM b1f8162c-2579-30d6-96a2-628324198b06",
    "IndexRef : LExpression 542be353-f6e9-3655-81af-7d81e9b45d72",
    "IndexRef.expr 2 LExpression O U NM 8bbcfc28-aa39-3e0b-80c4-3b9707c2e7dc",
    "IndexRef.startIndex 3 UInteger16 O U NM ND f43e33b6-ade8-370a-9788-d6f8fcec6b76",
    "IndexRef.endIndex 4 UInteger16 O U NM ND 33faf7c5-3945-3f1f-837f-a59b858086c5",
    "abstract IndexableValue : LatticeValue 009181ef-dfd6-37d8-b107-6b5b7a61007d",
    "IndexableValue.at(startIndex UInteger16, endIndex UInteger16) LatticeValue A",
    "IndexableValue.ref(startIndex UInteger16, endIndex UInteger16) Ref A",
    "Join : Expression 281a888f-375b-3e1d-a5a2-0adcdceed927",
    "Join.operands 2 Term[] O NM c02087b8-dbc0-3d40-9b0f-cd9bb3ded3df",
    "abstract LExpression : Expression 389dd4f2-e975-3de4-8c24-c9fe2d07a88c",
    "abstract LatticeType : ModelElement 76c0b034-0399-36e8-9ba4-68e19f708e15",
    "LatticeType.name 1 StdString O U NM ND 204d0ad3-3616-360b-8bd6-1f39d5d9bcf6",
    "LatticeType.numElems 2 UInteger16 O U NM ND 3b901a7f-7025-31f5-8655-f95d629472df",
    "LatticeType.top 3 LatticeValue O U NM 74759111-c957-31d4-9e74-41c143160b46",
    "LatticeType.bottom 4 LatticeValue O U NM af8c142c-23af-30e1-9ea0-fce9248d0780",
    "LatticeType.isCompatible(other LatticeType) Boolean A",
    "abstract LatticeValue : Term a1b030f5-3d6e-3fd0-abce-90d5d238db33",
    "LatticeValue.join(other LatticeValue) LatticeValue A",
    "LatticeValue.meet(other LatticeValue) LatticeValue A",
    "LatticeValue.le(other LatticeValue) boolean3 A",
    "LatticeValue.eq(other LatticeValue) Boolean A",
    "LatticeValue.clone() LatticeValue A",
    "Meet : Expression 427cf1d4-a92f-3e0b-9986-6e2530789850",
    "Meet.operands 2 Term[] O NM 391ae928-5e07-32f2-9eb7-ce35c00cff4d",
    "PowerSet : IndexableValue 677699d2-89d0-3790-a673-1b2d293023a2",
    "PowerSet.value 2 BitSet O U ND f4b6737d-4261-33d9-b0c5-98aa3053a6f3",
    "PowerSetType : LatticeType 7ef0fc9b-2bdf-3302-a4d9-7da02b233986",
    "PowerSetType.universe 5 StdString[] O NM c6742080-e70b-3f37-a440-00f3fb21f732",
    "Prune : Expression 95eccb4d-c0c5-3d8e-8428-e02c83ae216f",
    "Prune.expr 2 Expression O U NM 97dcc41b-d7dc-30e3-91f9-9614c64b84e1",
    "Prune.field 3 StdString[] O NM 99befb74-f31b-3e60-8f40-0d55b33d2c2e",
    "Struct : LatticeValue 096f485a-ee30-3f68-8ae0-88f63ff96674",
    "Struct.values 2 owned FieldElem[name] c1b68a6c-272d-341d-aa68-0e311a9387cf",
    "Struct.at(name StdString) LatticeValue",
    "Struct.ref(name StdString) Ref",
    "Struct.prune(fieldName StdString[] O) Struct",
    "StructRef : LExpression 0f777b59-5599-3706-a179-62547e0ced0e",
    "StructRef.expr 2 LExpression O U NM 9b04b840-7a0c-39ae-b94f-c5305f8ae591",
    "StructRef.field 3 StdString O U NM ND cf616786-88bb-306a-8817-46a9b3170c49",
    "StructType : LatticeType a25be7f4-c58f-3411-bb04-269ef1caac7d",
    "StructType.fields 5 owned FieldType[name] NM 31e1c15f-1eee-3f50-a7c1-2771c10214e8",
    "StructType.at(name StdString) LatticeType",
    "System : ModelElement f657beea-ce4e-39c2-bd39-fc68e7a38959",
    "System.equations 1 owned Equation[] O f2c66ce1-b92d-3251-ae69-573464c92e45",
    "abstract Term : ModelElement a216d2be-4290-3237-9058-36305621e5f9",
    "Term.type 1 LatticeType O U NM 1865689c-5459-30ff-825e-f104f9f0306f",
    "Variable : LExpression dad3b5dc-56b9-3729-8430-8d673ca0d597",
    "Variable.name 2 StdString O U NM ND 608071fd-1cd3-3457-a84a-8f5025565dee",
};

std::string typeOf(const meta::TypedElement& described) {
  const bool isMany = described->hasUpper() && described->getUpper() != 1;
  if (described->hasUpper()) {
    EXPECT_EQ(described->getLower(), isMany ? 0U : 1U);
    EXPECT_EQ(described->getUpper(), isMany ? meta::TypedElement::unbounded : 1U);
  }
  return toUtf8(described->getType()->getName()) + (isMany ? "[]" : "");
}

std::string declarationOf(const meta::Class& type) {
  return (type->isAbstract() ? "abstract " : "") + toUtf8(type->getName()) + " : " +
         toUtf8(type->getSuperclass()->getName()) + ' ' + to_string(type->getUuid());
}

std::string declarationOf(const meta::Property& property) {
  std::string text = toUtf8(property->getOwningType()->getName()) + '.' +
                     toUtf8(property->getName()) + ' ' + std::to_string(property->getPosition()) +
                     (property->isOwning() ? " owned " : " ") + typeOf(property);
  const meta::Property key = property->getQualifiedBy();
  EXPECT_EQ(property->getKind() == meta::ValueKind::Keyed, bool(key));
  if (property->getKind() != meta::ValueKind::Single)
    text += '[' + (key ? toUtf8(key->getName()) : "") + ']';
  const std::pair<bool, const char*> flags[] = {
      {property->isOrdered(), " O"},         {property->isUnique(), " U"},
      {property->isReadOnly(), " RO"},       {property->isTransient(), " Tr"},
      {!property->isPublicMutator(), " NM"}, {property->hasDefaultValue(), " ND"}};
  for (const auto& [flag, letters] : flags)
    if (flag) text += letters;
  EXPECT_FALSE(property->getDefaultValue());
  EXPECT_TRUE(property->isQualificationUnique());
  EXPECT_FALSE(property->hasLower());
  return text + ' ' + to_string(property->getUuid());
}

std::string declarationOf(const meta::Operation& operation) {
  EXPECT_TRUE(operation->isPublic() && !operation->isStatic() && !operation->isEvent());
  std::string text =
      toUtf8(operation->getOwningType()->getName()) + '.' + toUtf8(operation->getName()) + '(';
  for (const meta::Argument& argument : operation->getArguments()) {
    EXPECT_TRUE(argument->isInput());
    text += (text.back() == '(' ? "" : ", ") + toUtf8(argument->getName()) + ' ' + typeOf(argument);
    if (argument->isOrdered()) text += " O";
  }
  return text + ") " + typeOf(operation) + (operation->isAbstract() ? " A" : "");
}

/// All that the package of the data model registers, in its order.
std::vector<std::string> registered() {
  std::vector<std::string> lines;
  const MetaRegistry& registry = MetaRegistry::getInstance();
  const auto package =
      registry.findPackage("http://torvan.org/orb0/torvan_datamodel/r1/torvan.datamodel");
  if (!package) return lines;
  for (const meta::Type& type : package->getTypes()) {
    if (!(type->getMetaClass() == meta::Class::metaClass())) continue;
    const meta::Class described(type);
    lines.push_back(declarationOf(described));
    for (const auto& property : described->getProperties())
      lines.push_back(declarationOf(property));
    for (const auto& operation : described->getOperations())
      lines.push_back(declarationOf(operation));
  }
  return lines;
}

class RegistryTest : public SessionTest {
 protected:
  RegistryTest() { package.ensureInitialized(); }

  meta::AbstractMetaPackage& package = metaPackage();
  MetaRegistry& registry = MetaRegistry::getInstance();
};

TEST_F(RegistryTest, DescribesTheDeclaredClasses) {
  EXPECT_EQ(registered(),
            std::vector<std::string>(std::begin(declarations), std::end(declarations)));
}

TEST_F(RegistryTest, NamesFindTypesAndPackages) {
  const meta::Class array(registry.findType("torvan.datamodel.Array"));
  EXPECT_EQ(array, Array::metaClass());
  EXPECT_EQ(registry.findType(u"torvan::datamodel::Array"), array);
  EXPECT_EQ(array->getQualifiedName(), "torvan.datamodel.Array");
  EXPECT_EQ(array->getPropertyByIndex(2), Array::values());
  EXPECT_EQ(array->getPropertyByIndex(1), Term::type());
  EXPECT_FALSE(registry.findType("Array"));

  for (const char* name : {"BitSet", "LatticeValuePtr", "Ref", "StdString", "UInteger16", "Boolean",
                           "Integer", "String"})
    EXPECT_TRUE(registry.getPrimitiveType(name)) << name;
  EXPECT_FALSE(registry.getPrimitiveType("torvan.datamodel.Array"));
  EXPECT_EQ(registry.findType("torvan::datamodel::LatticeValue *"),
            registry.getPrimitiveType(u"LatticeValuePtr"));
  EXPECT_EQ(registry.findType("boost::dynamic_bitset<>"), registry.getPrimitiveType("BitSet"));

  const meta::Enum order(registry.findType("torvan.datamodel.boolean3"));
  EXPECT_EQ(order, registry.findType("torvan::datamodel::boolean3"));
  EXPECT_EQ(to_string(order->getUuid()), "c57c1825-b098-36bd-9d55-4dcfe621399a");
  EXPECT_EQ(order->getUnderlyingType(), registry.getPrimitiveType("Integer"));
  EXPECT_EQ(order->getLiteral(u"T")->getValue(), 1);
  EXPECT_EQ(to_string(order->getLiteral(3)->getUuid()), "c1dd6129-f66a-3ccc-b766-b82744b954d8");

  const meta::Package datamodel = array->getOwningPackage();
  const meta::Package torvan = datamodel->getParentPackage();
  EXPECT_EQ(datamodel->getName(), u"datamodel");
  EXPECT_EQ(registry.findPackage("http://torvan.org/orb0/torvan_datamodel/r1"),
            torvan->getParentPackage());
}

// Saved models name operations by these.
TEST_F(RegistryTest, GivenIdentitiesNeverChange) {
  const meta::Class value = LatticeValue::metaClass();
  const meta::Operation join = *value->getOperations().begin();
  EXPECT_EQ(to_string(join->getUuid()), "3e26eb61-82ce-3a6f-a69f-92a73066eb10");
  EXPECT_EQ(to_string((*join->getArguments().begin())->getUuid()),
            "f6c0157e-94ab-3e0d-b59e-bc1e47a90c6f");
  EXPECT_EQ(to_string(registry.getPrimitiveType("BitSet")->getUuid()),
            "b3046587-751e-333a-9838-f9cd7026de57");
}

TEST_F(RegistryTest, RecordsConvertToDescriptionsAndBack) {
  for (const meta::ClassInfo* info : modelClasses()) {
    const meta::Class type = *info;
    const meta::ClassInfo& back = type;
    EXPECT_EQ(&back, info);
    EXPECT_EQ(type->getBuilderFactory() == nullptr, info->isAbstract());
    for (const Property* own : info->all) {
      const meta::Property described = *own;
      const meta::PropertyInfo& record = described;
      EXPECT_EQ(&record, own);
    }
  }
  const Array array = make<Array>();
  const auto collectionOf = meta::Class(Array::metaClass())->getCollectionAccessor();
  EXPECT_EQ(collectionOf(*array.get(), Array::values()), &array->getValues());
  EXPECT_EQ(collectionOf(*array.get(), Array::type()), nullptr);
}

TEST_F(RegistryTest, SecondInitialisationReplaces) {
  const meta::Class before = Array::metaClass();
  const std::size_t size = registry.getModel().size(), packages = registry.getPackages().size();
  package.initialize();
  const meta::Class after = Array::metaClass();
  EXPECT_TRUE(!before && after && before == after);
  EXPECT_EQ(registry.findType("torvan.datamodel.Array")->getOwningPackage(),
            after->getOwningPackage());
  EXPECT_EQ(registry.getModel().size(), size);
  EXPECT_EQ(registry.getPackages().size(), packages);
  EXPECT_EQ(registered().size(), std::size(declarations));
}

TEST_F(RegistryTest, FailedInitialisationLeavesTheRegistryAsItWas) {
  const std::vector<meta::Type> all = registry.getTypes();
  const std::size_t size = registry.getModel().size();
  {
    const Model::Freezer::Thaw thaw(registry.getModel());
    const Transaction transaction(registry.getModel());
    for (const char* name : {"UInteger16", "StdString"}) registry.getPrimitiveType(name)->destroy();
    EXPECT_EQ(failureOf([&] { package.initialize(); }), "NoSuchType(StdString)");
  }
  EXPECT_EQ(registry.getModel().size(), size);
  EXPECT_EQ(registry.getTypes().size(), all.size());
  for (const meta::Type& type : all) {
    EXPECT_TRUE(registry.findType(type->getQualifiedName()).get() == type.get());
    EXPECT_TRUE(registry.findType(type->getNativeName()).get() == type.get());
  }
}

/// Describes an enumeration; fails as often as it is told to, late.
class ColourPackage final : public meta::AbstractMetaPackage {
 public:
  ColourPackage() : AbstractMetaPackage(u"http://example.org/colour") {}
  int failures = 0;

 private:
  void instantiate(MetaRegistry&) override { createEnum(u"Colour", "Colour", id); }
  void weave(MetaRegistry& registry, meta::PropertySerializerRegistry&) override {
    const auto colour = created<meta::Enum>(id);
    colour->setOwningPackage(packageAt(u"http://example.org/colour"));
    registry.registerTypeNames(colour, "Colour", "F\u00e4rbung \U0001d11e");
    if (failures-- > 0) registry.requireType("Hue");
  }
  static constexpr orb::zero::uuid id = orb::zero::uuidOf("7b0ca6d4-4b8e-4b1a-a8a4-b1a4f0b0a001");
};

TEST_F(RegistryTest, FailedFirstUseIsTriedAgain) {
  ColourPackage colours;
  colours.failures = 2;
  const std::size_t size = registry.getModel().size();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(failureOf([&] { colours.ensureInitialized(); }), "NoSuchType(Hue)");
    EXPECT_FALSE(registry.findType("Colour") || registry.findType("F\u00e4rbung \U0001d11e"));
    EXPECT_FALSE(registry.findPackage("http://example.org/colour"));
    EXPECT_EQ(registry.getModel().size(), size);
  }
  colours.ensureInitialized();
  const meta::Type colour = registry.findType(u"F\u00e4rbung \U0001d11e");
  colours.ensureInitialized();
  EXPECT_TRUE(colour);  // initialised once
  registry.unregisterRootPackage(u"http://example.org/colour");
  EXPECT_FALSE(registry.findType("Colour") || registry.findPackage("http://example.org/colour"));
  EXPECT_TRUE(registry.findType("torvan.datamodel.Array"));
}

}  // namespace
}  // namespace torvan::datamodel
