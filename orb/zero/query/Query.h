#pragma once

#include <vector>

#include <orb/zero/query/AbstractQuery.h>

namespace orb::zero::query {

/// A search for elements of class X:
///
///     Query<Variable> query(model);
///     Variable::Constrainables variable(query, Variable::metaClass(),
///                                      SearchClassMatchMode::ThisClassOnly);
///     query.where(variable.name() == "x" && !variable.type().isPresent());
///     for (const Variable& found : query.execute()) ...
///
/// Without a `Constrainables`, X and all classes derived from it are searched.
template <class X>
class Query : public AbstractQuery {
 public:
  explicit Query(const Model& model) : AbstractQuery(model, X::metaClass()) {}

  /// The live elements that fulfil all conditions, in the order of their creation, as the open
  /// transaction left them. May be called again; what is done with the results does not matter.
  std::vector<X> execute() const {
    const Constraint::Elements found = find();
    std::vector<X> results;
    results.reserve(found.size());
    for (ModelElement::Impl* const element : found) results.emplace_back(ModelElement(element));
    return results;
  }
};

}  // namespace orb::zero::query
