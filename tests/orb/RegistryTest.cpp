#include <utility>

#include <orb/zero/meta/AbstractMetaPackage.h>
#include <orb/zero/meta/Argument.h>
#include <orb/zero/meta/EnumLiteral.h>
#include <orb/zero/meta/Operation.h>
#include <orb/zero/meta/Property.h>
#include <orb/zero/meta/PropertySerializerRegistry.h>
#include <boost/uuid/uuid_io.hpp>

#include "tests/datamodel/SessionTest.h"
#include "tests/support/Golden.h"

namespace torvan::datamodel {
namespace {

using meta::MetaRegistry;
using orb::zero::toUtf8;

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

/// All that the package of the data model registers, in its order. Saved models and scripts rely on
/// it, and it therefore never changes:
///   class       abstract? name : superclass UUID
///   property    class.name position owned? type, [] for several, [key] for keyed; flags, UUID
///   operation   class.name(arguments) result; [] for several, A for abstract
std::string registered() {
  std::string lines;
  const MetaRegistry& registry = MetaRegistry::getInstance();
  const auto package =
      registry.findPackage("http://torvan.org/orb0/torvan_datamodel/r1/torvan.datamodel");
  if (!package) return lines;
  for (const meta::Type& type : package->getTypes()) {
    if (!(type->getMetaClass() == meta::Class::metaClass())) continue;
    const meta::Class described(type);
    lines += declarationOf(described) + '\n';
    for (const auto& property : described->getProperties()) lines += declarationOf(property) + '\n';
    for (const auto& operation : described->getOperations())
      lines += declarationOf(operation) + '\n';
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
  EXPECT_EQ(registered(), tests::golden("declarations.list"));
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
  EXPECT_EQ(to_string(registry.getPrimitiveType("BitSet")->getUuid()),
            "b3046587-751e-333a-9838-f9cd7026de57");
  EXPECT_EQ(registry.findType("torvan::datamodel::LatticeValue *"),
            registry.getPrimitiveType(u"LatticeValuePtr"));
  EXPECT_EQ(registry.findType("boost::dynamic_bitset<>"), registry.getPrimitiveType("BitSet"));

  const meta::Enum order(registry.findType("torvan.datamodel.boolean3"));
  EXPECT_EQ(order, registry.findType("torvan::datamodel::boolean3"));
  EXPECT_EQ(to_string(order->getUuid()), "c57c1825-b098-36bd-9d55-4dcfe621399a");
  EXPECT_EQ(order->getUnderlyingType(), registry.getPrimitiveType("Integer"));
  EXPECT_EQ(order->getLiteral(u"T")->getValue(), 1);
  EXPECT_EQ(to_string(order->getLiteral(3)->getUuid()), "c1dd6129-f66a-3ccc-b766-b82744b954d8");

  const meta::Operation join = meta::Class(LatticeValue::metaClass())->getOperations()[0];
  EXPECT_EQ(to_string(join->getUuid()), "3e26eb61-82ce-3a6f-a69f-92a73066eb10");
  EXPECT_EQ(to_string(join->getArguments()[0]->getUuid()), "f6c0157e-94ab-3e0d-b59e-bc1e47a90c6f");

  const meta::Package datamodel = array->getOwningPackage();
  const meta::Package torvan = datamodel->getParentPackage();
  EXPECT_EQ(datamodel->getName(), u"datamodel");
  EXPECT_EQ(registry.findPackage("http://torvan.org/orb0/torvan_datamodel/r1"),
            torvan->getParentPackage());
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
  EXPECT_EQ(collectionOf(*array.get(), Struct::values()), nullptr);
}

TEST_F(RegistryTest, SecondInitialisationReplaces) {
  const auto& serializers = orb::zero::PropertySerializerRegistry::getInstance();
  const auto serializer = serializers.find("BitSet");
  const meta::Class before = Array::metaClass();
  const std::size_t size = registry.getModel().size(), packages = registry.getPackages().size();
  package.initialize();
  const meta::Class after = Array::metaClass();
  EXPECT_TRUE(!before && after && before == after);
  EXPECT_EQ(registry.findType("torvan.datamodel.Array")->getOwningPackage(),
            after->getOwningPackage());
  EXPECT_EQ(registry.getModel().size(), size);
  EXPECT_EQ(registry.getPackages().size(), packages);
  EXPECT_EQ(registered(), tests::golden("declarations.list"));
  EXPECT_TRUE(serializers.find("BitSet") && serializers.find("BitSet") != serializer);
  EXPECT_EQ(serializer->serializeValue(BitSet(1)), "");  // who holds it may go on
}

/// Describes an enumeration; fails as often as it is told to, late.
class ColourPackage final : public meta::AbstractMetaPackage {
 public:
  ColourPackage() : AbstractMetaPackage(u"http://example.org/colour") {}
  int failures = 0;
  orb::zero::uuid id = orb::zero::uuidOf("7b0ca6d4-4b8e-4b1a-a8a4-b1a4f0b0a001");

 private:
  void instantiate(MetaRegistry&) override { createEnum(u"Colour", "Colour", id); }
  void weave(MetaRegistry& registry, meta::PropertySerializerRegistry& serializers) override {
    const auto colour = created<meta::Enum>(id);
    colour->setOwningPackage(packageAt(u"http://example.org/colour"));
    registry.registerTypeNames(colour, "Colour", "F\u00e4rbung \U0001d11e");
    serializers.registerPropertySerializer(colour, serializers.find("UInteger16"));
    if (failures-- > 0) registry.requireType("Hue");
  }
};

TEST_F(RegistryTest, FailedFirstUseIsTriedAgain) {
  ColourPackage colours;
  colours.failures = 2;
  const std::size_t size = registry.getModel().size();
  for (int i = 0; i < 2; ++i) {
    EXPECT_RAISES(colours.ensureInitialized(), "NoSuchType(Hue)");
    EXPECT_FALSE(registry.findType("Colour") || registry.findType("F\u00e4rbung \U0001d11e"));
    EXPECT_FALSE(registry.findPackage("http://example.org/colour"));
    EXPECT_FALSE(registry.getSerializers().find("Colour"));
    EXPECT_EQ(registry.getModel().size(), size);
  }
  colours.ensureInitialized();
  const meta::Type colour = registry.findType(u"F\u00e4rbung \U0001d11e");
  colours.ensureInitialized();
  EXPECT_TRUE(colour);  // initialised once
  EXPECT_TRUE(registry.getSerializers().find("Colour"));
  registry.unregisterRootPackage(u"http://example.org/colour");
  EXPECT_FALSE(registry.findType("Colour") || registry.findPackage("http://example.org/colour"));
  EXPECT_TRUE(registry.findType("torvan.datamodel.Array"));
}

TEST_F(RegistryTest, ReferencesFollowWhatIsDescribedAgain) {
  ColourPackage colours;
  colours.initialize();
  const Model::Freezer::Thaw thaw(registry.getModel());
  const meta::Enum hue = meta::Enum::create(registry.getModel(), model.newUuid());
  const auto colour = [&] { return registry.findType("Colour").get(); };
  hue->setUnderlyingType(registry.findType("Colour"));
  const meta::Type before = hue->getUnderlyingType();
  colours.failures = 1;
  EXPECT_RAISES(colours.initialize(), "NoSuchType(Hue)");
  EXPECT_TRUE(before && hue->getUnderlyingType().get() == before.get() && colour() == before.get());
  colours.initialize();
  EXPECT_TRUE(!before && hue->getUnderlyingType() && hue->getUnderlyingType().get() == colour());
  colours.id = model.newUuid();
  colours.initialize();
  EXPECT_FALSE(hue->getUnderlyingType());
  hue->destroy();
  registry.unregisterRootPackage(u"http://example.org/colour");
}

/// Needs another package, of which it fails to describe more.
class HuePackage final : public meta::AbstractMetaPackage {
 public:
  explicit HuePackage(meta::AbstractMetaPackage& colours)
      : AbstractMetaPackage(u"http://example.org/hue"), colours_(colours) {}

 private:
  void instantiate(MetaRegistry& registry) override {
    colours_.ensureInitialized();
    const meta::Type colour = registry.findType("Colour");
    colours_.ensureInitialized();
    EXPECT_TRUE(colour);
  }
  void weave(MetaRegistry& registry, meta::PropertySerializerRegistry&) override {
    registry.requireType("Hue");
  }

  meta::AbstractMetaPackage& colours_;
};

TEST_F(RegistryTest, FailedInitialisationTakesBackWhatItNeeded) {
  ColourPackage colours;
  HuePackage hues(colours);
  EXPECT_RAISES(hues.ensureInitialized(), "NoSuchType(Hue)");
  EXPECT_FALSE(registry.findType("Colour"));
  colours.ensureInitialized();
  EXPECT_TRUE(registry.findType("Colour"));
  EXPECT_RAISES(hues.ensureInitialized(), "NoSuchType(Hue)");
  EXPECT_TRUE(registry.findType("Colour"));
  registry.unregisterRootPackage(u"http://example.org/colour");
}

}  // namespace
}  // namespace torvan::datamodel
