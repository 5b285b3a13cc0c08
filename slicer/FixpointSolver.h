#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include <torvan/datamodel.h>

#include "Program.h"

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
/// Temporaries and former values are reclaimed whenever there are many of them, so other values of
/// the model that nobody holds go as well.
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

  /// Takes the equations and operands as they are now; constants, and what selections select, are
  /// read while solving and have to stay.
  explicit FixpointSolver(datamodel::System system);

  void solve(const Progress& progress = {});
  /// The value of a term under the present values of the variables. It may be shared by several
  /// variables and the equations, and is not to be changed.
  datamodel::LatticeValue evaluate(const datamodel::Term& term) const {
    return program_.evaluate(term);
  }
  const Statistics& statistics() const { return statistics_; }

 private:
  using Number = Program::Number;

  /// Calls `visit` for each variable that an equation reads, and the equation, once.
  template <class Visit>
  void forReaders(Visit visit) const;
  void reclaim();

  orb::zero::Model model_;
  Program program_;
  std::vector<std::uint32_t> firstReaders_;  // by number, and one more
  std::vector<Number> readers_;              // equations
  std::size_t reclaimAt_ = 0;
  Statistics statistics_;
};

}  // namespace torvan::slicer
