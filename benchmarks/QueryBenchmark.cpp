#include <orb/zero/query/Query.h>
#include <torvan/datamodel.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

using orb::zero::query::AbstractQuery, orb::zero::query::SearchClassMatchMode;

constexpr std::uint16_t kinds = 1000;

std::uint16_t numberOf(std::size_t i) { return static_cast<std::uint16_t>(i % kinds); }
std::string textOf(std::size_t i) { return "variable " + std::to_string(i % kinds); }

/// A model of elements of class X, each of which `set` gives one of a thousand values.
template <class X, class Set>
orb::zero::Model modelOf(std::size_t size, Set set) {
  const orb::zero::Model model = orb::zero::Model::create();
  for (std::size_t i = 0; i < size; ++i) {
    typename X::Builder builder(model);
    set(builder, i);
    builder.create();
  }
  return model;
}

using Make = std::function<Side()>;

template <class X, class MakeModel, class Where>
Make ourSide(MakeModel make, Where where) {
  return [=] {
    const auto query = std::make_shared<orb::zero::query::Query<X>>(make());
    where(*query);
    const auto found = std::make_shared<std::vector<X>>();
    return Side{.run = [=] { *found = query->execute(); }, .result = [=] { return found->size(); }};
  };
}

/// A vector of objects much like ours, of which a plain loop asks the same.
template <class X, class Value>
Make rawSide(Value (*valueOf)(std::size_t), std::size_t size) {
  struct Element : RawElement<typename X::Super::Impl> {
    using RawElement<typename X::Super::Impl>::RawElement;
    Value value;
  };
  return [=] {
    orb::zero::UuidGenerator newUuid;
    const auto elements = std::make_shared<std::vector<std::unique_ptr<Element>>>();
    for (std::size_t i = 0; i < size; ++i) {
      elements->push_back(std::make_unique<Element>(newUuid()));
      elements->back()->value = valueOf(i);
    }
    const auto found = std::make_shared<std::vector<Element*>>();
    const auto search = [=, wanted = valueOf(kinds / 2)] {
      found->clear();
      for (const auto& element : *elements)
        if (element->value == wanted) found->push_back(element.get());
    };
    return Side{.run = search, .result = [=] { return found->size(); }};
  };
}

/// A search for one of the values of a property of X, which `set` sets and `read` asks for.
template <class X, class Value, class Set, class Read>
std::vector<Entrant> sidesOf(std::size_t size, Value (*valueOf)(std::size_t), Set set, Read read) {
  const auto make = [=] {
    return modelOf<X>(size, [=](auto& builder, std::size_t i) { set(builder, valueOf(i)); });
  };
  const auto where = [=](AbstractQuery& query) {
    const typename X::Constrainables element(query, X::metaClass(),
                                             SearchClassMatchMode::ThisClassOnly);
    query.where(read(element) == valueOf(kinds / 2));
  };
  return {{"ours", ourSide<X>(make, where)}, {"raw", rawSide<X>(valueOf, size)}};
}

void addSize(Cases& cases, std::size_t size) {
  cases.push_back({.name = "query.number",
                   .size = size,
                   .items = size,
                   .targets = {atMost(4)},
                   .sides = sidesOf<ArrayElem>(
                       size, numberOf,
                       [](auto& builder, std::uint16_t value) { builder->basicSetIndex(value); },
                       [](const auto& element) { return element.index(); })});
  cases.push_back(
      {.name = "query.text",
       .size = size,
       .items = size,
       .sides = sidesOf<Variable>(
           size, textOf,
           [](auto& builder, std::string value) { builder->basicSetName(std::move(value)); },
           [](const auto& variable) { return variable.name(); })});
}

}  // namespace

void addQueryCases(Cases& cases) {
  for (const std::size_t size : {10'000u, 1'000'000u}) addSize(cases, size);
}

}  // namespace torvan::datamodel::benchmarks
