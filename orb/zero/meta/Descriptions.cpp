#include <orb/zero/meta/MetaRegistry.h>

#include <orb/zero/Exception.h>
#include <orb/zero/meta/AbstractMetaPackage.h>

/// From the constant records to the elements that describe them, and back.
namespace orb::zero::meta {
namespace {

template <class X, class Info>
X descriptionOf(const Info& info) {
  info.package().ensureInitialized();
  MetaRegistry& registry = MetaRegistry::getInstance();
  const std::lock_guard lock(registry.getMutex());
  return X(registry.getModel().find(info.id));
}

template <class X>
const auto& recordOf(const X& description) {
  if (!description->getInfo()) raise("NoSuchType", {toUtf8(description->getName())});
  return *description->getInfo();
}

}  // namespace

ClassInfo::operator Class() const { return descriptionOf<Class>(*this); }
PropertyInfo::operator Property() const { return descriptionOf<Property>(*this); }
Class::operator const ClassInfo&() const { return recordOf(*this); }
Property::operator const PropertyInfo&() const { return recordOf(*this); }

Property Class::Impl::getPropertyByIndex(int position) const {
  for (Class level = Class(This()); level; level = level->getSuperclass())
    for (const Property& own : level->getProperties())
      if (own->getPosition() == position) return own;
  return {};
}

EnumLiteral Enum::Impl::getLiteral(std::u16string_view name) const {
  for (const EnumLiteral& literal : literals_)
    if (literal->getName() == name) return literal;
  return {};
}
EnumLiteral Enum::Impl::getLiteral(int value) const {
  for (const EnumLiteral& literal : literals_)
    if (literal->getValue() == value) return literal;
  return {};
}

std::string EnumLiteral::Impl::getText(LiteralText form) const {
  if (form == LiteralText::Id) return toString(getUuid());
  const std::string name = toUtf8(getName());
  return form == LiteralText::Name ? name : getParentEnum()->getQualifiedName() + '.' + name;
}

}  // namespace orb::zero::meta
