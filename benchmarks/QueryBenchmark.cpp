#include <orb/zero/query/Query.h>
#include <torvan/datamodel.h>

#include <cstdint>
#include <memory>
#include <string>
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

template <class X, class Where>
void addOurs(const std::string& name, std::size_t size, orb::zero::Model (*make)(std::size_t),
             Where where) {
  runSeldom(addCase(name, size, "ours",
                    [size, make, where](benchmark::State& state) {
                      orb::zero::query::Query<X> query(make(size));
                      where(query);
                      std::vector<X> found;
                      measure(state, size, [&] { found = query.execute(); });
                      check(state, found.size() == size / kinds);
                    }),
            30);
}

/// A vector of objects much like ours, of which a plain loop asks the same.
template <class X, class Value>
void addFloor(const std::string& name, std::size_t size, Value (*valueOf)(std::size_t)) {
  struct Element : RawElement<typename X::Super::Impl> {
    using RawElement<typename X::Super::Impl>::RawElement;
    Value value;
  };
  runSeldom(addCase(name, size, "floor",
                    [size, valueOf](benchmark::State& state) {
                      orb::zero::UuidGenerator newUuid;
                      std::vector<std::unique_ptr<Element>> elements;
                      for (std::size_t i = 0; i < size; ++i) {
                        elements.push_back(std::make_unique<Element>(newUuid()));
                        elements.back()->value = valueOf(i);
                      }
                      const Value wanted = valueOf(kinds / 2);
                      std::vector<Element*> found;
                      measure(state, size, [&] {
                        found.clear();
                        for (const auto& element : elements)
                          if (element->value == wanted) found.push_back(element.get());
                      });
                      check(state, found.size() == size / kinds);
                    }),
            30);
}

void addCases(std::size_t size) {
  addOurs<ArrayElem>(
      "query.number", size,
      [](std::size_t count) {
        return modelOf<ArrayElem>(
            count, [](auto& builder, std::size_t i) { builder->basicSetIndex(numberOf(i)); });
      },
      [](AbstractQuery& query) {
        const ArrayElem::Constrainables element(query, ArrayElem::metaClass(),
                                                SearchClassMatchMode::ThisClassOnly);
        query.where(element.index() == numberOf(kinds / 2));
      });
  addFloor<ArrayElem>("query.number", size, numberOf);
  addOurs<Variable>(
      "query.text", size,
      [](std::size_t count) {
        return modelOf<Variable>(
            count, [](auto& builder, std::size_t i) { builder->basicSetName(textOf(i)); });
      },
      [](AbstractQuery& query) {
        const Variable::Constrainables variable(query, Variable::metaClass(),
                                                SearchClassMatchMode::ThisClassOnly);
        query.where(variable.name() == textOf(kinds / 2));
      });
  addFloor<Variable>("query.text", size, textOf);
}

}  // namespace

void addQueryCases() {
  for (const std::size_t size : {10'000u, 1'000'000u}) addCases(size);
}

}  // namespace torvan::datamodel::benchmarks
