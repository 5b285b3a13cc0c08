#include <FixpointSolver.h>
#include <torvan/datamodel.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/FixpointWorkload.h"
#include "benchmarks/Memory.h"

namespace torvan::datamodel::benchmarks {
namespace {

using slicer::FixpointSolver;

constexpr std::uint16_t universe = 256;

std::string nameOf(FixpointWorkload::Kind kind) {
  return kind == FixpointWorkload::Kind::Dense ? "dense" : "sparse";
}

SetWords wordsOf(const BitSet& bits) {
  SetWords words{};
  boost::to_block_range(bits, words.begin());
  return words;
}

/// The equations as elements of a session.
class OurSystem {
 public:
  explicit OurSystem(const FixpointWorkload& workload) {
    orb::zero::Transaction transaction(session_.model());
    const PowerSetType type = session_.typeFactory()->createPowerSetType("P", universe);
    ExpressionFactory& expressions = *session_.expressionFactory();
    variables_.reserve(workload.equations.size());
    for (std::size_t i = 0; i < workload.equations.size(); ++i)
      variables_.push_back(expressions.createVariable(type, "x"));
    const auto builder = session_.createSystemBuilder();
    for (std::size_t i = 0; i < workload.equations.size(); ++i) {
      const auto& [first, second, constant] = workload.equations[i];
      const BitSet bits(constant.begin(), constant.end());
      const Term both = expressions.createJoin({variables_[first], variables_[second]});
      const Term value = session_.valueFactory()->createPowerSet(type, bits);
      builder->addEquation(variables_[i], expressions.createJoin({both, value}));
    }
    system_ = builder->build();
    transaction.commit();
  }

  const System& system() const { return system_; }
  void reclaim() const { session_.model().reclaim(); }
  std::vector<SetWords> solution(FixpointSolver& solver) const {
    std::vector<SetWords> words;
    for (const Variable& variable : variables_)
      words.push_back(wordsOf(PowerSet(solver.evaluate(variable))->getValue()));
    return words;
  }

 private:
  Session session_;
  std::vector<Variable> variables_;
  System system_;
};

class OurFixpoint {
 public:
  static constexpr char name[] = "ours";
  explicit OurFixpoint(const FixpointWorkload& workload) : system_(workload) {}

  void restart() {
    solver_.reset();
    system_.reclaim();
    solver_.emplace(system_.system());
  }
  void solve() { solver_->solve(); }
  std::uint64_t evaluations() const { return solver_->statistics().evaluations; }
  std::vector<SetWords> solution() { return system_.solution(*solver_); }

 private:
  OurSystem system_;
  std::optional<FixpointSolver> solver_;
};

/// Which equations wait, first in first out, and which read what.
class PlainQueue {
 public:
  explicit PlainQueue(const FixpointWorkload& workload)
      : starts_(workload.equations.size() + 1), isPending_(workload.equations.size()) {
    for (const auto& equation : workload.equations)
      forOperands(equation, [&](std::uint32_t operand) { ++starts_[operand]; });
    std::exclusive_scan(starts_.begin(), starts_.end(), starts_.begin(), std::uint32_t{0});
    readers_.resize(starts_.back());
    std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
    for (std::uint32_t i = 0; i < workload.equations.size(); ++i)
      forOperands(workload.equations[i],
                  [&](std::uint32_t operand) { readers_[next[operand]++] = i; });
  }

  /// Evaluates until no x_i grows any more, as `evaluate(i)` tells; returns how often.
  template <class Evaluate>
  std::uint64_t run(Evaluate evaluate) {
    const std::size_t size = isPending_.size();
    std::vector<std::uint32_t> ring(size);  // at most all of them wait
    std::iota(ring.begin(), ring.end(), std::uint32_t{0});
    std::fill(isPending_.begin(), isPending_.end(), true);
    std::size_t first = 0, waiting = size, end = 0;
    std::uint64_t evaluations = 0;
    for (; waiting > 0; --waiting, ++evaluations) {
      const std::uint32_t i = ring[first];
      if (++first == size) first = 0;
      isPending_[i] = false;
      if (!evaluate(i)) continue;
      for (std::uint32_t at = starts_[i]; at < starts_[i + 1]; ++at) {
        if (std::exchange(isPending_[readers_[at]], true)) continue;
        ring[end] = readers_[at];
        if (++end == size) end = 0;
        ++waiting;
      }
    }
    return evaluations;
  }

 private:
  template <class Use>
  static void forOperands(const FixpointWorkload::Equation& equation, Use use) {
    use(equation.first);
    if (equation.second != equation.first) use(equation.second);
  }

  std::vector<std::uint32_t> starts_, readers_;  // those of x_i from starts_[i] on
  std::vector<char> isPending_;
};

/// Words in place, which is the least that can be done.
class FlatValues {
 public:
  static constexpr char name[] = "flat";
  explicit FlatValues(const FixpointWorkload& workload) : equations_(workload.equations) {}

  void restart() { values_.assign(equations_.size(), {}); }
  bool evaluate(std::uint32_t i) {
    const auto& [first, second, constant] = equations_[i];
    std::uint64_t changed = 0;
    for (std::size_t k = 0; k < constant.size(); ++k) {
      const std::uint64_t word = values_[first][k] | values_[second][k] | constant[k];
      changed |= word ^ values_[i][k];
      values_[i][k] = word;
    }
    return changed != 0;
  }
  std::vector<SetWords> words() const { return values_; }

 private:
  std::vector<FixpointWorkload::Equation> equations_;
  std::vector<SetWords> values_;
};

/// Bit sets by value: a new one for each evaluation.
class BoostValues {
 public:
  static constexpr char name[] = "boost";
  explicit BoostValues(const FixpointWorkload& workload) {
    for (const auto& [first, second, constant] : workload.equations)
      equations_.push_back({first, second, BitSet(constant.begin(), constant.end())});
  }

  void restart() { values_.assign(equations_.size(), BitSet(universe)); }
  bool evaluate(std::uint32_t i) {
    const auto& [first, second, constant] = equations_[i];
    BitSet value = values_[first];
    value |= values_[second];
    value |= constant;
    if (value == values_[i]) return false;
    values_[i] = std::move(value);
    return true;
  }
  std::vector<SetWords> words() const {
    std::vector<SetWords> words;
    for (const BitSet& value : values_) words.push_back(wordsOf(value));
    return words;
  }

 private:
  struct Equation {
    std::uint32_t first, second;
    BitSet constant;
  };
  std::vector<Equation> equations_;
  std::vector<BitSet> values_;
};

/// The loop of the solver for values without a library.
template <class Values>
class PlainFixpoint {
 public:
  static constexpr const char* name = Values::name;
  explicit PlainFixpoint(const FixpointWorkload& workload) : values_(workload), queue_(workload) {}

  void restart() { values_.restart(); }
  void solve() {
    evaluations_ = queue_.run([this](std::uint32_t i) { return values_.evaluate(i); });
  }
  std::uint64_t evaluations() const { return evaluations_; }
  std::vector<SetWords> solution() const { return values_.words(); }

 private:
  Values values_;
  PlainQueue queue_;
  std::uint64_t evaluations_ = 0;
};

using Kind = FixpointWorkload::Kind;

void addSolve(Cases& cases, Kind kind, std::size_t size, double factor) {
  std::vector<Target> targets;
  if (size == 1'000'000) targets.push_back(timesOf(factor, "flat"));
  targets.push_back(timesOf(1, "boost"));
  cases.push_back(
      {.name = "fixed point.solve " + nameOf(kind),
       .size = size,
       .items = FixpointWorkload::evaluationsOf(kind, size),
       .targets = std::move(targets),
       .sides = entrants<OurFixpoint, PlainFixpoint<FlatValues>, PlainFixpoint<BoostValues>>(
           [=]<class X>() {
             const auto workload = std::make_shared<FixpointWorkload>(kind, size);
             const auto fixpoint = std::make_shared<X>(*workload);
             const auto check = [=] {
               workload->check(fixpoint->evaluations(), fixpoint->solution());
               return std::uint64_t{0};
             };
             return Side{.run = [=] { fixpoint->solve(); },
                         .prepare = [=] { fixpoint->restart(); },
                         .result = check};
           })});
}

/// What the solver needs beside the system, at its peak.
void addMemory(Cases& cases, Kind kind, std::size_t size) {
  const auto solve = [=] {
    return Side{.amount = [=] {
      const OurSystem system(FixpointWorkload(kind, size));
      return memoryTaken(Resident::Peak, [&] { FixpointSolver(system.system()).solve(); });
    }};
  };
  cases.push_back({.name = "fixed point.memory " + nameOf(kind),
                   .size = size,
                   .items = size,
                   .unit = bytes,
                   .targets = {atMost(150)},
                   .sides = {{"ours", solve}}});
}

void addBuild(Cases& cases, std::size_t size) {
  const auto build = [=] {
    const auto workload = std::make_shared<FixpointWorkload>(Kind::Dense, size);
    const auto system = std::make_shared<std::optional<OurSystem>>();
    return Side{.run = [=] { system->emplace(*workload); },
                .finish = [=] { system->reset(); },
                .result = [=] { return (*system)->system()->getEquations().size(); }};
  };
  const auto start = [=] {
    const auto system = std::make_shared<OurSystem>(FixpointWorkload(Kind::Dense, size));
    const auto solver = std::make_shared<std::optional<FixpointSolver>>();
    return Side{.run = [=] { solver->emplace(system->system()); },
                .finish = [=] { solver->reset(); },
                .result = [=] { return (*solver)->statistics().equations; }};
  };
  const double million = static_cast<double>(size) / 1e6;
  cases.push_back({.name = "fixed point.build the system",
                   .size = size,
                   .unit = seconds,
                   .targets = {atMost(1.5 * million)},
                   .sides = {{"ours", build}}});
  cases.push_back({.name = "fixed point.make the solver",
                   .size = size,
                   .unit = seconds,
                   .sides = {{"ours", start}}});
}

}  // namespace

void addFixpointCases(Cases& cases) {
  for (const std::size_t size : {10'000u, 100'000u, 1'000'000u}) {
    addBuild(cases, size);
    addSolve(cases, Kind::Dense, size, 3);
    addSolve(cases, Kind::Sparse, size, 5);
    addMemory(cases, Kind::Dense, size);
    addMemory(cases, Kind::Sparse, size);
  }
}

}  // namespace torvan::datamodel::benchmarks
