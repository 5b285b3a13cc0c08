#include <orb/zero/meta/impl/StandardPackage.h>

#include <utility>

#include <orb/zero/meta/Emit.h>
#include <orb/zero/meta/impl/Elements.h>

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
using Descriptions = ClassList<Argument, Class, Enum, EnumLiteral, NamedElement, Operation, Package,
                               PrimitiveType, Property, Type, TypedElement>;

constexpr std::pair<std::string_view, std::string_view> primitives[] = {
    {ValueTraits<bool>::name(), "bool"},
    {ValueTraits<int>::name(), "int"},
    {ValueTraits<std::string>::name(), "std::string"},
    {ValueTraits<std::u16string>::name(), "std::u16string"},
    {ValueTraits<std::uint16_t>::name(), "std::uint16_t"},
    {ValueTraits<std::uint32_t>::name(), "std::uint32_t"}};

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
  for (const auto& [name, native] : primitives) createPrimitiveType(name);
  instantiateClasses(classesOf(Elements()));
  instantiateClasses(classesOf(Descriptions()));
}

void StandardPackage::weave(MetaRegistry&) {
  packageAt(outer)->setParentPackage(packageAt(root));
  packageAt(inner)->setParentPackage(packageAt(outer));
  packageAt(descriptions)->setParentPackage(packageAt(inner));
  for (const auto& [name, native] : primitives) weavePrimitiveType(packageAt(inner), name, native);
  weaveClasses(packageAt(inner), classesOf(Elements()));
  weaveClasses(packageAt(descriptions), classesOf(Descriptions()));
}

}  // namespace meta
}  // namespace orb::zero
