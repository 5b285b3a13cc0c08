#pragma once

#include <orb/zero/Model.h>
#include <torvan/datamodel/Equation.h>
#include <torvan/datamodel/LExpression.h>
#include <torvan/datamodel/System.h>

namespace torvan::datamodel {

/// Assembles a system of equations. The system exists from the start; the builder holds it, and
/// destroying the builder leaves it in its model.
class TORVAN_DATAMODEL_API SystemBuilder {
 public:
  /// Makes an empty system in the model.
  explicit SystemBuilder(orb::zero::Model model);

  /// Makes a new equation and appends it to the system. An empty handle leaves its side unset;
  /// types are not compared. A side of another model raises "CannotCreateCrossModelAssociation".
  Equation addEquation(const LExpression& lhs, const Term& rhs);
  /// The system, always the same; equations may be added after.
  System build() const { return system_; }

 private:
  orb::zero::Model model_;
  System system_;
};

}  // namespace torvan::datamodel
