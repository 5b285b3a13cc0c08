#include <torvan/datamodel/impl/MetaPackageTorvan_datamodel.h>

#include <orb/zero/meta/EnumLiteral.h>
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

struct Primitive {
  std::string_view name, native;
};
constexpr Primitive primitives[] = {
    {ValueTraits<BitSet>::name(), "boost::dynamic_bitset<>"},
    {ValueTraits<LatticeValue*>::name(), "torvan::datamodel::LatticeValue *"},
    {ValueTraits<Ref>::name(), "torvan::datamodel::Ref"}};

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
  for (const Primitive& primitive : primitives) createPrimitiveType(primitive.name);
  registry.requireType(ValueTraits<std::string>::name());
  registry.requireType(ValueTraits<std::uint16_t>::name());
  createEnum(u"boolean3", boolean3Id);
  for (const Literal& literal : literals)
    createEnumLiteral(literal.name, static_cast<int>(literal.value), literal.id);
}

void MetaPackageTorvan_datamodel::weave(meta::MetaRegistry& registry) {
  weave_torvan(registry);
  weave_torvan_datamodel(registry);
}

void MetaPackageTorvan_datamodel::weave_torvan(meta::MetaRegistry&) {
  packageAt(torvanUri)->setParentPackage(packageAt(rootUri));
}

void MetaPackageTorvan_datamodel::weave_torvan_datamodel(meta::MetaRegistry& registry) {
  const meta::Package datamodel = packageAt(datamodelUri);
  datamodel->setParentPackage(packageAt(torvanUri));
  for (const auto& [name, native] : primitives) weavePrimitiveType(datamodel, name, native);

  const auto boolean3Type = created<meta::Enum>(boolean3Id);
  boolean3Type->setOwningPackage(datamodel);
  boolean3Type->setUnderlyingType(registry.requireType(ValueTraits<int>::name()));
  for (const Literal& literal : literals)
    created<meta::EnumLiteral>(literal.id)->setParentEnum(boolean3Type);
  registry.registerTypeNames(boolean3Type, ValueTraits<boolean3>::name(),
                             "torvan::datamodel::boolean3");

  weaveClasses(datamodel, modelClasses());
}

}  // namespace torvan::datamodel
