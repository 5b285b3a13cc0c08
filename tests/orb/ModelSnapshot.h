#pragma once

#include <string>
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
  return targets.found;
}

inline std::string primitivesOf(const ModelElement& element) {
  const auto& type = element->getMetaClass();
  std::string text;
  if (type.isKindOf(LatticeType::metaClass())) {
    const LatticeType lattice{element};
    text = lattice->getName() + '/' + std::to_string(lattice->getNumElems());
  }
  if (type == PowerSetType::metaClass())
    for (const std::string& name : PowerSetType(element)->getUniverse()) text += ' ' + name;
  if (type == FieldType::metaClass()) text = FieldType(element)->getName();
  if (type == FieldElem::metaClass()) text = FieldElem(element)->getName();
  if (type == Variable::metaClass()) text = Variable(element)->getName();
  if (type == PowerSet::metaClass()) to_string(PowerSet(element)->getValue(), text);
  if (type == Join::metaClass())
    for (const Term& operand : Join(element)->getOperands()) text += operand ? 'x' : '-';
  return text;
}

/// Everything that can be observed of an element, as text.
inline std::string describe(const ModelElement& element) {
  const auto& type = element->getMetaClass();
  const ModelElement container = element->getContainer();
  std::string text = to_string(element->getUuid()) + ' ' + std::string(type.name) + " in " +
                     (container ? to_string(container->getUuid()) : "none");
  for (const Property* property : type.all) {
    text += "; " + std::string(property->name);
    if (!property->type && element->isGiven(property->position)) text += " given";
    for (const auto* target : targetsOf(element, *property))
      text += ' ' + to_string(target->getUuid());
  }
  return text + "; " + primitivesOf(element);
}

/// Everything that can be observed of a model, a line per element in the order of creation.
inline std::string snapshot(const orb::zero::Model& model) {
  std::string lines;
  for (const ModelElement element : model.elements()) lines += describe(element) + '\n';
  return lines;
}

/// Both ends of every link agree, and the model finds what it iterates over.
inline void expectConsistent(const orb::zero::Model& model) {
  std::size_t count = 0, owned = 0, contained = 0;
  for (const ModelElement element : model.elements()) {
    ++count;
    EXPECT_TRUE(model.find(element->getUuid()) == element);
    if (element->getContainer()) ++contained;
    EXPECT_EQ(element->container() != nullptr, static_cast<bool>(element->getContainer()));
    for (const Property* property : element->getMetaClass().all) {
      for (const auto* target : targetsOf(element, *property)) {
        EXPECT_TRUE(target->isAlive());
        if (!property->isOwning) continue;
        ++owned;
        EXPECT_TRUE(target->isContainedIn(*element.get(), property->position));
      }
    }
  }
  EXPECT_EQ(count, model.size());
  EXPECT_EQ(owned, contained);
}

}  // namespace torvan::datamodel
