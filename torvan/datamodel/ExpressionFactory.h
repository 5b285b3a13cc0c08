#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <orb/zero/Model.h>
#include <torvan/datamodel/Conditional.h>
#include <torvan/datamodel/IndexRef.h>
#include <torvan/datamodel/Join.h>
#include <torvan/datamodel/Meet.h>
#include <torvan/datamodel/Prune.h>
#include <torvan/datamodel/StructRef.h>
#include <torvan/datamodel/Variable.h>

namespace torvan::datamodel {

/// Makes expressions and gives them their types. Each operation makes one element, which refers to
/// its operands. Types are not compared. An empty handle leaves its property unset, and an element
/// whose type cannot be told has none. An element of another model raises
/// "CannotCreateCrossModelAssociation"; when an operation raises, nothing was made.
class TORVAN_DATAMODEL_API ExpressionFactory {
 public:
  explicit ExpressionFactory(orb::zero::Model model);

  Variable createVariable(const LatticeType& type, const std::string& name);
  /// The type is that of the first term. An empty term keeps its place as an empty entry.
  Join createJoin(const std::vector<Term>& terms);
  Meet createMeet(const std::vector<Term>& terms);
  /// The type is that of the field. Raises "CannotCastIncompatibleTypes" when the type of `expr` is
  /// not a struct type.
  StructRef createStructRef(const LExpression& expr, const std::string& field);
  /// The elements `start` to `end` (`start` alone when there is no end). The type is the element
  /// type of an array, whatever the width of the range, and else that of `expr`.
  IndexRef createIndexRef(const LExpression& expr, std::uint16_t start,
                          std::optional<std::uint16_t> end = std::nullopt);
  /// The type is that of `t`.
  Conditional createConditional(const Expression& ctrl, const Term& t, const Term& f);
  /// Has no type. `fields` is the path to what is pruned.
  Prune createPrune(const Expression& expr, const std::vector<std::string>& fields);

 private:
  orb::zero::Model model_;
};

}  // namespace torvan::datamodel
