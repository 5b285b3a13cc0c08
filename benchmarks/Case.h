#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace torvan::datamodel::benchmarks {

/// One implementation of a case, with what it works on.
struct Side {
  /// Does all items of the case. Only this is timed.
  std::function<void()> run = [] {};
  /// Called before and after each run.
  std::function<void()> prepare = [] {};
  std::function<void()> finish = [] {};
  /// What a run has computed, as a number that is the same for all sides.
  std::function<std::uint64_t()> result = [] { return std::uint64_t{0}; };
  /// For a case of bytes, what is measured once in place of a run, for all items.
  std::function<double()> amount = {};
};

/// A side with an X of its own, which is made anew by `prepare` for each run and ended after it.
/// Both take an optional X; the result is what `X::count` counts in the end.
template <class X>
Side renewing(auto prepare, auto run) {
  const auto x = std::make_shared<std::optional<X>>();
  return {.run = [=] { run(*x); },
          .prepare = [=] { prepare(*x); },
          .finish = [=] { x->reset(); },
          .result = [=] { return *x ? (*x)->count() : 0; }};
}

/// A side that is made when the case comes up, and what it is called: "ours", or a column of the
/// table. Sides of one name are builds of one implementation, of which the best counts.
struct Entrant {
  std::string name;
  std::function<Side()> make;
};

/// The entrants that `make<X>()` makes, for each class X under its own name.
template <class... X, class Make>
std::vector<Entrant> entrants(Make make) {
  return {{X::name, [make] { return make.template operator()<X>(); }}...};
}

/// What ours may take: so many times what another side takes, and so much more.
struct Target {
  double factor = 0;
  std::string side;
  double more = 0;
};
inline Target atMost(double limit) { return {0, "", limit}; }
inline Target timesOf(double factor, std::string side, double more = 0) {
  return {factor, std::move(side), more};
}

struct Unit {
  const char* name;
  double perSecond;  // 1 for amounts
};
constexpr Unit nanoseconds{"ns", 1e9};
constexpr Unit seconds{"s", 1};
constexpr Unit bytes{"bytes", 1};

/// Something that is measured for all its sides in turn, again and again.
struct Case {
  std::string name;
  std::size_t size;       // how large its model or values are
  std::size_t items = 1;  // what is reported is the share of one of so many
  Unit unit = nanoseconds;
  std::vector<Target> targets = {};  // all are to be met
  std::vector<Entrant> sides = {};

  std::string title() const { return name + '/' + std::to_string(size); }
};
using Cases = std::vector<Case>;

/// Has the case fail; used by sides that can tell by themselves.
inline void check(bool isRight) {
  if (!isRight) throw std::runtime_error("a wrong result");
}

/// Random numbers that are the same in every run.
using Random = std::mt19937_64;

void addPowerSetCases(Cases& cases);
void addCompositeCases(Cases& cases);
void addReclaimCases(Cases& cases);
void addCreationCases(Cases& cases);
void addTransactionCases(Cases& cases);
void addKeyedCases(Cases& cases);
void addSystemCases(Cases& cases);
void addExpressionCases(Cases& cases);
void addReferenceCases(Cases& cases);
void addReflectionCases(Cases& cases);
void addQueryCases(Cases& cases);
void addSaveCases(Cases& cases);
void addFixpointCases(Cases& cases);

}  // namespace torvan::datamodel::benchmarks
