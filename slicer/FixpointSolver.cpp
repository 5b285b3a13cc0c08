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
  std::size_t first = 0, end = 0;
  const auto next = [=](std::size_t place) { return place + 1 == size ? 0 : place + 1; };
  for (std::size_t pending = size; pending > 0; --pending) {
    const Number equation = ring[first];
    first = next(first);
    isPending[equation] = false;
    if (pending > 4 * stride) {
      const auto ahead = [&](std::size_t strides) {
        const std::size_t place = first + strides * stride - 1;
        return ring[place < size ? place : place - size];
      };
      const auto prefetch = [&](Number later, Program::Prefetch what) {
        program_.prefetch(later, later >= settled_, what);
      };
      prefetch(ahead(4), Program::Prefetch::Rule);
      prefetch(ahead(3), Program::Prefetch::Summands);
      prefetch(ahead(2), Program::Prefetch::Handles);
      prefetch(ahead(1), Program::Prefetch::Values);
      __builtin_prefetch(&firstReaders_[program_.target(ahead(2))]);
      __builtin_prefetch(readers_.data() + firstReaders_[program_.target(ahead(1))]);
    }
    const bool isNew = equation == settled_;
    const bool hasGrown = program_.evaluate(equation, isNew);
    if (isNew) ++settled_;
    if (hasGrown) {
      const Number target = program_.target(equation);
      for (std::size_t at = firstReaders_[target]; at < firstReaders_[target + 1]; ++at) {
        if (isPending[readers_[at]]) continue;
        isPending[readers_[at]] = true;
        ring[end] = readers_[at];
        end = next(end);
        ++pending;
      }
    }
    if (++statistics_.evaluations % 64 == 0) reclaim();
    if (statistics_.evaluations % 1024 == 0 && progress) progress(statistics_, pending - 1);
  }
}

/// Each variable may have come to a value of its own, so that as many new ones are no garbage.
void FixpointSolver::reclaim() {
  if (model_.size() < reclaimAt_) return;
  if (reclaimAt_ != 0) statistics_.reclaimed += model_.reclaim();
  reclaimAt_ = model_.size() + std::max(program_.variables() + 4096, model_.size() / 8);
}

}  // namespace torvan::slicer
