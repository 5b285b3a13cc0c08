#pragma once

#include <cstddef>
#include <optional>
#include <set>

#include "BlockSystem.h"
#include "Criterion.h"
#include "FixpointSolver.h"

namespace torvan::slicer {

/// Slices by any number of criteria; the equations are solved once.
class Slicer {
 public:
  /// The system has to outlive the object.
  explicit Slicer(const BlockSystem& system, const FixpointSolver::Progress& progress = {});

  /// The blocks that can influence the criterion, with its own.
  std::set<std::size_t> backward(const Criterion& criterion) const;
  /// The blocks that the criterion's block can influence, and the block itself.
  std::set<std::size_t> forward(const Criterion& criterion) const;

  const FixpointSolver::Statistics& statistics() const { return solver_.statistics(); }

 private:
  /// Adds what a port reads: one element of it, or all. Where the elements are not followed apart,
  /// each stands for all.
  void join(datamodel::BitSet& influences, const BlockPort& port,
            std::optional<std::size_t> element = {}) const;
  datamodel::BitSet influences(const SystemBlock& block) const;

  const BlockSystem& system_;
  FixpointSolver solver_;
};

}  // namespace torvan::slicer
