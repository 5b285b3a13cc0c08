#pragma once

#include <cstddef>
#include <set>
#include <vector>

#include "Criterion.h"
#include "DependenceSystem.h"
#include "FixpointSolver.h"

namespace torvan::slicer {

/// Slices a network by any number of criteria; the equations are solved once.
class Slicer {
 public:
  /// The network has to outlive the object.
  Slicer(const Network& network, const Signals& signals, Dependences dependences,
         const FixpointSolver::Progress& progress = {});

  /// The leaves that can influence the criterion, with its own.
  std::set<std::size_t> backward(const Criterion& criterion);
  /// The leaves that the criterion's leaf can influence, and the leaf itself.
  std::set<std::size_t> forward(const Criterion& criterion);

  datamodel::System system() const { return equations_.system(); }
  const FixpointSolver::Statistics& statistics() const { return solver_.statistics(); }

 private:
  datamodel::BitSet join(const std::vector<datamodel::Term>& terms);

  const Network& network_;
  DependenceSystem equations_;
  FixpointSolver solver_;
};

}  // namespace torvan::slicer
