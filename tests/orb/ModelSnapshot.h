#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <orb/zero/ElementRange.h>
#include <orb/zero/Targets.h>
#include <torvan/datamodel.h>
#include <boost/uuid/uuid_io.hpp>

namespace torvan::datamodel {

inline std::vector<orb::zero::ModelElement::Impl*> targetsOf(const ModelElement& element,
                                                             const Property& property) {
  orb::zero::Targets targets;
  property.services.targets(*element.get(), targets);
  return {targets.found.begin(), targets.found.end()};
}

/// The value as text, with elements as `nameOf` calls them.
template <class NameOf>
std::string textOf(const orb::zero::Value& value, NameOf nameOf) {
  if (value.isEmpty()) return "unset";
  const std::string_view name = value.type()->name;
  if (name == "UInteger16") return std::to_string(value.getValue<std::uint16_t>());
  std::string text;
  if (name == "BitSet") {
    to_string(value.getValue<BitSet>(), text);
    return text;
  }
  const bool isText = name == "StdString";
  if (value.type()->multiplicity == orb::zero::Multiplicity::One)
    return isText ? value.getValue<std::string>() : nameOf(value.getValue<ModelElement>());
  if (isText)
    for (const auto& item : value.getValue<std::vector<std::string>>()) text += ',' + item;
  else
    for (const auto& item : value.getValue<std::vector<ModelElement>>()) text += ',' + nameOf(item);
  return '[' + text.substr(text.empty() ? 0 : 1) + ']';
}

/// Everything that can be observed of an element, as text.
inline std::string describe(const ModelElement& element) {
  const auto idOf = [](const ModelElement& named) {
    return named ? (named->isProxy() ? "~" : "") + to_string(named->getUuid()) : "none";
  };
  const auto& type = element->getMetaClass();
  std::string text =
      idOf(element) + ' ' + std::string(type.name) + " in " + idOf(element->getContainer());
  for (const Property* property : type.all)
    text += "; " + std::string(property->name) + ' ' +
            textOf(element->getPropertyValue(*property, orb::zero::ProxyTag::Keep), idOf);
  return text;
}

/// Everything that can be observed of a model, a line per element in the order of creation.
inline std::string snapshot(const orb::zero::Model& model) {
  std::string lines;
  for (const ModelElement element : model.elements()) lines += describe(element) + '\n';
  return lines;
}

/// It is alive, or in the making.
inline void expectOwner(const ModelElement& element) {
  const auto* const owner = element->container();
  EXPECT_TRUE(!owner || owner->isAlive() || owner->place() == UINT32_MAX);
}

/// Both ends of every link agree, and the model finds what it iterates over.
inline void expectConsistent(const orb::zero::Model& model) {
  std::size_t count = 0, owned = 0, contained = 0;
  for (const ModelElement element : model.elements()) {
    ++count;
    EXPECT_TRUE(model.find(element->getUuid()) == element);
    if (element->getContainer()) ++contained;
    expectOwner(element);
    for (const Property* property : element->getMetaClass().all) {
      for (const auto* target : targetsOf(element, *property)) {
        EXPECT_TRUE(target->isAlive());
        if (!property->isOwning) continue;
        owned += !target->isProxy();
        EXPECT_TRUE(target->isContainedIn(*element.get(), property->position));
      }
    }
  }
  EXPECT_EQ(count, model.size());
  EXPECT_EQ(owned, contained);
}

}  // namespace torvan::datamodel
