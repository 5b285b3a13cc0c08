#include "Slicer.h"

namespace torvan::slicer {

using namespace datamodel;

Slicer::Slicer(const Network& network, const Signals& signals, Dependences dependences,
               const FixpointSolver::Progress& progress)
    : network_(network), equations_(network, signals, dependences), solver_(equations_.system()) {
  solver_.solve(progress);
}

BitSet Slicer::join(const std::vector<Term>& terms) {
  BitSet leaves(network_.leaves().size());
  for (const Term& term : terms) leaves |= PowerSet {
      solver_.evaluate(term)
      } -> getValue();
  return leaves;
}

std::set<std::size_t> Slicer::backward(const Criterion& criterion) {
  const BitSet influences =
      criterion.port ? join(equations_.input({criterion.leaf, *criterion.port}, criterion.element))
                     : join(equations_.inputs(criterion.leaf));
  std::set<std::size_t> slice{criterion.leaf};
  for (std::size_t leaf = influences.find_first(); leaf != BitSet::npos;
       leaf = influences.find_next(leaf))
    slice.insert(leaf);
  return slice;
}

std::set<std::size_t> Slicer::forward(const Criterion& criterion) {
  std::set<std::size_t> slice{criterion.leaf};
  for (std::size_t leaf = 0; leaf < network_.leaves().size(); ++leaf)
    if (join(equations_.inputs(leaf)).test(criterion.leaf)) slice.insert(leaf);
  return slice;
}

}  // namespace torvan::slicer
