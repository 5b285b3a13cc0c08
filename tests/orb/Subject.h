#pragma once

#include <orb/zero/query/Comparison.h>

#include <algorithm>
#include <string>
#include <typeinfo>
#include <vector>

#include <torvan/datamodel.h>
#include "tests/orb/Failure.h"

namespace torvan::datamodel {

using meta::ClassInfo, meta::ValueKind;
using orb::zero::Model;
using orb::zero::Value;
using Elements = std::vector<ModelElement>;
using Texts = std::vector<std::string>;

/// The first class with instances that is, or is not, of this one.
inline const ClassInfo& concreteClass(const ClassInfo& type, bool isFit) {
  return **std::find_if(modelClasses().begin(), modelClasses().end(), [&](const ClassInfo* each) {
    return !each->isAbstract() && each->isKindOf(type) == isFit;
  });
}

/// A value that the property takes: of a primitive type the n-th, from the one that is like none; a
/// new element; of a collection n items, under the first n keys.
inline Value fit(const Model& model, const Property& property, std::uint16_t n) {
  const auto element = [&](std::uint16_t i) {
    const auto builder = concreteClass(property.type(), true).makeBuilder(model);
    for (const Property* key : builder->getMetaClass().all)
      if (key->name == property.key) builder->setOrAdd(*key, fit(model, *key, i));
    return builder->create();
  };
  if (property.kind != ValueKind::Single) {
    Elements elements;
    Texts texts;
    for (std::uint16_t i = 0; i < n; ++i)
      if (property.type)
        elements.push_back(element(i));
      else
        texts.emplace_back(i, 'x');
    return property.type ? Value(elements) : Value(texts);
  }
  if (property.type) return element(n);
  if (*property.primitive == typeid(std::uint16_t)) return n;
  if (*property.primitive == typeid(std::string)) return std::string(n, 'x');
  return BitSet(n, 1);
}

/// That the property has the value, or that its collection has the last one.
inline query::Constraint holding(const Property& property, const Value& value) {
  using enum query::Comparison;
  if (property.kind != ValueKind::Single)
    return property.type ? compare(property, Contains, value.getValue<Elements>().back())
                         : compare(property, Contains, value.getValue<Texts>().back());
  if (property.type) return compare(property, Equal, value.getValue<ModelElement>());
  if (*property.primitive == typeid(std::uint16_t))
    return compare(property, Equal, value.getValue<std::uint16_t>());
  if (*property.primitive == typeid(std::string))
    return compare(property, Equal, value.getValue<std::string>());
  return compare(property, Equal, value.getValue<BitSet>());
}

/// One property of a new element in a model of its own, and two values for it.
struct Subject {
  Subject(const ClassInfo& type, const Property& tested)
      : property(tested), element(type.makeBuilder(model)->create()) {}

  Value get() const { return element->getPropertyValue(property); }
  bool has() const { return element->hasPropertyValue(property); }
  void set(const Value& given) const { element->setPropertyValue(property, given); }
  std::string refusal(const Value& given) const {
    return failureOf([&] { set(given); });
  }

  const Model model = Model::create();
  const Property& property;
  const ModelElement element;
  const Value unset = get(), value = fit(model, property, 1), other = fit(model, property, 2);
};

}  // namespace torvan::datamodel
