#include <torvan/datamodel/impl/MetaPackageTorvan_datamodel.h>

#include <orb/zero/meta/DefaultPropertySerializer.h>
#include <orb/zero/meta/TransientOnlyPropertySerializer.h>
#include <torvan/datamodel/ModelClasses.h>
#include <torvan/datamodel/ValueTypes.h>

namespace torvan::datamodel {
namespace {

using orb::zero::uuid;
using orb::zero::uuidOf;
using orb::zero::ValueTraits;

constexpr char16_t rootUri[] = u"http://torvan.org/orb0/torvan_datamodel/r1";
constexpr char16_t torvanUri[] = u"http://torvan.org/orb0/torvan_datamodel/r1/torvan";
constexpr char16_t datamodelUri[] = u"http://torvan.org/orb0/torvan_datamodel/r1/torvan.datamodel";

constexpr uuid boolean3Id = uuidOf("c57c1825-b098-36bd-9d55-4dcfe621399a");
struct Literal {
  const char16_t* name;
  boolean3 value;
  uuid id;
};
constexpr Literal literals[] = {
    {u"T", boolean3::T, uuidOf("1b9706f9-ede4-3edc-8456-dc2af7f8b889")},
    {u"F", boolean3::F, uuidOf("e57d6682-d317-3651-8acc-ef1ed04a2f52")},
    {u"NA", boolean3::NA, uuidOf("c1dd6129-f66a-3ccc-b766-b82744b954d8")}};

}  // namespace

meta::AbstractMetaPackage& metaPackage() { return MetaPackageTorvan_datamodel::getInstance(); }

MetaPackageTorvan_datamodel::MetaPackageTorvan_datamodel() : meta::AbstractMetaPackage(rootUri) {}

MetaPackageTorvan_datamodel& MetaPackageTorvan_datamodel::getInstance() {
  static auto& package = *new MetaPackageTorvan_datamodel;  // lives as long as the registry
  return package;
}

void MetaPackageTorvan_datamodel::instantiate(meta::MetaRegistry& registry) {
  instantiate_torvan(registry);
  instantiate_torvan_datamodel(registry);
}

void MetaPackageTorvan_datamodel::instantiate_torvan(meta::MetaRegistry&) {
  createPackage(u"torvan", torvanUri);
}

void MetaPackageTorvan_datamodel::instantiate_torvan_datamodel(meta::MetaRegistry& registry) {
  createPackage(u"datamodel", datamodelUri);
  instantiateClasses(modelClasses());
  createPrimitiveType(ValueTraits<BitSet>::name());
  createPrimitiveType(ValueTraits<LatticeValue*>::name());
  createPrimitiveType(ValueTraits<Ref>::name());
  registry.requireType(ValueTraits<std::string>::name());
  registry.requireType(ValueTraits<std::uint16_t>::name());
  createEnum(u"boolean3", ValueTraits<boolean3>::name(), boolean3Id);
  for (const Literal& literal : literals)
    createEnumLiteral(literal.name, static_cast<int>(literal.value), literal.id);
}

void MetaPackageTorvan_datamodel::weave(meta::MetaRegistry& registry,
                                        meta::PropertySerializerRegistry& serializers) {
  weave_torvan(registry, serializers);
  weave_torvan_datamodel(registry, serializers);
}

void MetaPackageTorvan_datamodel::weave_torvan(meta::MetaRegistry&,
                                               meta::PropertySerializerRegistry&) {
  packageAt(torvanUri)->setParentPackage(packageAt(rootUri));
}

void MetaPackageTorvan_datamodel::weave_torvan_datamodel(
    meta::MetaRegistry& registry, meta::PropertySerializerRegistry& serializers) {
  const meta::Package datamodel = packageAt(datamodelUri);
  datamodel->setParentPackage(packageAt(torvanUri));
  weaveClasses(datamodel, modelClasses());

  // Bits are never saved; the other two are results of operations only.
  weavePrimitiveType(datamodel, ValueTraits<BitSet>::name(), "boost::dynamic_bitset<>",
                     std::make_shared<meta::TransientOnlyPropertySerializer<BitSet>>());
  weavePrimitiveType(datamodel, ValueTraits<LatticeValue*>::name(),
                     "torvan::datamodel::LatticeValue *", nullptr);
  weavePrimitiveType(datamodel, ValueTraits<Ref>::name(), "torvan::datamodel::Ref", nullptr);

  const auto order = created<meta::Enum>(boolean3Id);
  order->setOwningPackage(datamodel);
  order->setUnderlyingType(registry.requireType(ValueTraits<int>::name()));
  for (const Literal& literal : literals)
    created<meta::EnumLiteral>(literal.id)->setParentEnum(order);
  registry.registerType(order, &collectionOf, nullptr);
  registry.registerTypeNames(order, ValueTraits<boolean3>::name(), "torvan::datamodel::boolean3");
  const auto serialize = [&](meta::LiteralText form, std::string_view key) {
    serializers.registerPropertySerializer(
        order, std::make_shared<meta::DefaultPropertySerializer<boolean3>>(order, form), key);
  };
  serialize(meta::LiteralText::Name, {});
  serialize(meta::LiteralText::Id, "ID");
  serialize(meta::LiteralText::PublicId, "PublicID");
}

}  // namespace torvan::datamodel
