#pragma once

#include <vector>

#include <orb/zero/Model.h>
#include <orb/zero/query/Constraint.h>
#include <orb/zero/query/SearchClassMatchMode.h>

namespace orb::zero::query {

/// A search of a model for the elements of a class that fulfil conditions, whichever the class; see
/// `Query`. It keeps the model.
class ORB_ZERO_API AbstractQuery {
 public:
  AbstractQuery(const AbstractQuery&) = delete;
  AbstractQuery& operator=(const AbstractQuery&) = delete;

  /// Searches this class from now on. Raises "InvalidValue" for elements that would not have been
  /// searched before.
  void narrow(const meta::ClassInfo& type, SearchClassMatchMode mode);
  /// Adds a condition that every result fulfils. Raises "InvalidValue" when it is about a property
  /// that the class lacks.
  void where(const Constraint& constraint);

 protected:
  AbstractQuery(const Model& model, const meta::ClassInfo& type) : model_(model), type_(&type) {}
  ~AbstractQuery() = default;

  /// The live elements that fulfil all conditions, in the order of their creation.
  Constraint::Elements find() const;

 private:
  Model model_;
  const meta::ClassInfo* type_;
  SearchClassMatchMode mode_ = SearchClassMatchMode::WithSubclasses;
  std::vector<Constraint> constraints_;
};

}  // namespace orb::zero::query
