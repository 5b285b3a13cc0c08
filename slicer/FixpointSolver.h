#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>
#include <vector>

#include <orb/zero/Visitor.h>
#include <torvan/datamodel.h>

namespace torvan::slicer {

/// Solves a system of equations by iteration: the least values of its variables such that every
/// left side is above its right side.
///
/// It knows nothing of diagrams and works for any `System` whose right sides are monotone and whose
/// variables and left sides have types. Values start at bottom. An equation is evaluated when a
/// variable that it reads has grown: its right side with the operations of the values, its left
/// side as a `Ref` into the variable's value, into which the result is joined. A conditional is the
/// join of its control expression and its operands: whatever decides is an influence as well.
///
/// The temporaries of the evaluation are reclaimed whenever the model has doubled, so other values
/// of the model that nobody holds go as well.
class FixpointSolver {
 public:
  struct Statistics {
    std::size_t equations = 0;
    std::size_t variables = 0;
    std::uint64_t evaluations = 0;
    std::uint64_t reclaimed = 0;  ///< Elements freed while solving.
  };
  /// Called now and then while solving.
  using Progress = std::function<void(const Statistics&, std::size_t pending)>;

  explicit FixpointSolver(datamodel::System system);

  void solve(const Progress& progress = {});
  /// The value of a term under the present values of the variables.
  datamodel::LatticeValue evaluate(const datamodel::Term& term);
  const Statistics& statistics() const { return statistics_; }

 private:
  struct Rule {
    datamodel::Equation equation;
    std::size_t writes;  ///< The variable, an index into `variables_`.
    bool isPending = true;
  };
  struct Unknown {
    datamodel::LatticeValue value;  ///< Empty as long as it is bottom.
    std::vector<std::size_t> readers;
  };
  class Evaluator;
  class Placer;

  std::size_t indexOf(const datamodel::Variable& variable);
  /// Joins the right side into the left side; true when that has grown.
  bool apply(const Rule& rule);
  void reclaim();

  datamodel::System system_;
  std::vector<Rule> rules_;
  std::vector<Unknown> variables_;
  std::unordered_map<datamodel::ModelElement, std::size_t, orb::zero::ElementHash> indices_;
  std::size_t reclaimAt_ = 0;
  Statistics statistics_;
};

}  // namespace torvan::slicer
