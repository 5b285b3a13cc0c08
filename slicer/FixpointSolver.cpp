#include "FixpointSolver.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace torvan::slicer {

using namespace datamodel;

namespace {
constexpr std::size_t stride = 4;  // evaluations between two kinds of prefetching
}

FixpointSolver::FixpointSolver(System system) : model_(system->getModel()) {
  const auto& equations = system->getEquations();
  program_.reserve(equations.size());
  for (const Equation& equation : equations) program_.add(equation);
  program_.complete();
  statistics_.equations = program_.equations();
  statistics_.variables = program_.variables();

  firstReaders_.resize(program_.numbers() + 1);
  forReaders([this](Number variable, Number) { ++firstReaders_[variable]; });
  std::inclusive_scan(firstReaders_.begin(), firstReaders_.end(), firstReaders_.begin());
  readers_.resize(firstReaders_.back());
  forReaders(
      [this](Number variable, Number equation) { readers_[--firstReaders_[variable]] = equation; });
}

/// From the last equation to the first, so that lists that are filled from their ends ascend.
template <class Visit>
void FixpointSolver::forReaders(Visit visit) const {
  std::vector<Number> latest(program_.numbers(), UINT32_MAX);
  for (std::size_t rest = program_.equations(); rest-- > 0;) {
    const auto equation = static_cast<Number>(rest);
    program_.forReads(equation, [&](Number variable) {
      if (std::exchange(latest[variable], equation) != equation) visit(variable, equation);
    });
  }
}

void FixpointSolver::solve(const Progress& progress) {
  const std::size_t size = program_.equations();
  std::vector<Number> ring(size);  // at most all of them wait
  std::iota(ring.begin(), ring.end(), Number{0});
  std::vector<bool> isPending(size, true);
  std::size_t first = 0, waiting = size;
  const auto at = [&](std::size_t place) -> Number& {
    place += first;
    return ring[place < size ? place : place - size];
  };
  while (waiting > 0) {
    const Number equation = ring[first];
    if (++first == size) first = 0;
    --waiting;
    isPending[equation] = false;
    if (waiting >= 4 * stride) {
      using enum Program::Prefetch;
      const auto ahead = [&](std::size_t strides) { return at(strides * stride - 1); };
      const Number later = ahead(2), next = ahead(1);
      program_.prefetch<Rule>(ahead(4));
      program_.prefetch<Summands>(ahead(3));
      program_.prefetch<Handles>(later);
      program_.prefetch<Values>(next);
      __builtin_prefetch(&firstReaders_[program_.target(later)]);
      __builtin_prefetch(readers_.data() + firstReaders_[program_.target(next)]);
    }
    if (program_.evaluate(equation)) {
      const Number target = program_.target(equation);
      for (std::size_t i = firstReaders_[target]; i < firstReaders_[target + 1]; ++i) {
        if (isPending[readers_[i]]) continue;
        isPending[readers_[i]] = true;
        at(waiting++) = readers_[i];
      }
    }
    if (++statistics_.evaluations % 64 == 0) reclaim();
    if (statistics_.evaluations % 1024 == 0 && progress) progress(statistics_, waiting);
  }
}

/// Each variable may have come to a value of its own, so that as many new ones are no garbage.
void FixpointSolver::reclaim() {
  if (model_.size() < reclaimAt_) return;
  if (reclaimAt_ != 0) statistics_.reclaimed += model_.reclaim();
  reclaimAt_ = model_.size() + std::max(program_.variables() + 4096, model_.size() / 8);
}

}  // namespace torvan::slicer
