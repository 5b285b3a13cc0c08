#include <orb/zero/meta/impl/StandardPackage.h>

#include <memory>
#include <string_view>

#include <orb/zero/meta/DefaultPropertySerializer.h>
#include <orb/zero/meta/DescriptionClasses.h>
#include <orb/zero/meta/Emit.h>

namespace orb::zero {

meta::AbstractMetaPackage& packageOf(std::type_identity<ModelElement>) {
  return meta::metaPackage();
}

namespace meta {

AbstractMetaPackage& metaPackage() { return StandardPackage::getInstance(); }

namespace {

constexpr char16_t root[] = u"http://torvan.org/orb0/r1";
constexpr char16_t outer[] = u"http://torvan.org/orb0/r1/orb";
constexpr char16_t inner[] = u"http://torvan.org/orb0/r1/orb.zero";
constexpr char16_t descriptions[] = u"http://torvan.org/orb0/r1/orb.zero.meta";

using Elements = ClassList<ModelElement>;

struct Primitive {
  std::string_view name, native;
  PropertySerializerRegistry::Serializer (*makeSerializer)();
};
template <class T>
constexpr Primitive primitive(std::string_view native) {
  return {ValueTraits<T>::name(), native, []() -> PropertySerializerRegistry::Serializer {
            return std::make_shared<DefaultPropertySerializer<T>>();
          }};
}
constexpr Primitive primitives[] = {primitive<bool>("bool"),
                                    primitive<int>("int"),
                                    primitive<std::string>("std::string"),
                                    primitive<std::u16string>("std::u16string"),
                                    primitive<std::uint16_t>("std::uint16_t"),
                                    primitive<std::uint32_t>("std::uint32_t")};

}  // namespace

StandardPackage::StandardPackage() : AbstractMetaPackage(root) {}

StandardPackage& StandardPackage::getInstance() {
  static StandardPackage& package = *new StandardPackage;  // lives as long as the registry
  return package;
}

void StandardPackage::instantiate(MetaRegistry&) {
  createPackage(u"orb", outer);
  createPackage(u"zero", inner);
  createPackage(u"meta", descriptions);
  for (const Primitive& each : primitives) createPrimitiveType(each.name);
  instantiateClasses(classesOf(Elements()));
  instantiateClasses(classesOf(Descriptions()));
}

void StandardPackage::weave(MetaRegistry&, PropertySerializerRegistry&) {
  packageAt(outer)->setParentPackage(packageAt(root));
  packageAt(inner)->setParentPackage(packageAt(outer));
  packageAt(descriptions)->setParentPackage(packageAt(inner));
  for (const Primitive& each : primitives)
    weavePrimitiveType(packageAt(inner), each.name, each.native, each.makeSerializer());
  weaveClasses(packageAt(inner), classesOf(Elements()));
  weaveClasses(packageAt(descriptions), classesOf(Descriptions()));
}

}  // namespace meta
}  // namespace orb::zero
