#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <random>
#include <string>

namespace torvan::datamodel::benchmarks {

/// Registers one side of a case: "ours", or "floor" with a word on which one, such as "floor
/// boost". The report puts the sides of equal case and size beside each other.
inline benchmark::internal::Benchmark* addCase(const std::string& name, std::size_t size,
                                               const std::string& side,
                                               std::function<void(benchmark::State&)> body) {
  const std::string full = name + '/' + std::to_string(size) + '/' + side;
  return benchmark::RegisterBenchmark(full.c_str(), std::move(body));
}

/// For a case whose preparation takes long: every repetition runs it so many times.
inline void runSeldom(benchmark::internal::Benchmark* registered, int iterations = 1) {
  registered->Iterations(iterations)->Repetitions(3);
}

/// What was computed must be right before it is timed.
inline void check(benchmark::State& state, bool right) {
  if (!right) state.SkipWithError("wrong result");
}

/// Times `run`, which does `items` operations; `prepare` and `finish` around it are not timed.
template <class Prepare, class Run, class Finish>
void measure(benchmark::State& state, std::size_t items, Prepare prepare, Run run, Finish finish) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    prepare();
    state.ResumeTiming();
    run();
    state.PauseTiming();
    finish();
    state.ResumeTiming();
  }
  state.counters["items"] = static_cast<double>(items);
}
template <class Prepare, class Run>
void measure(benchmark::State& state, std::size_t items, Prepare prepare, Run run) {
  measure(state, items, prepare, run, [] {});
}
template <class Run>
void measure(benchmark::State& state, std::size_t items, Run run) {
  for ([[maybe_unused]] auto _ : state) run();
  state.counters["items"] = static_cast<double>(items);
}

/// Random numbers that are the same in every run.
using Random = std::mt19937_64;

void addPowerSetCases();
void addCompositeCases();
void addCreationCases();
void addTransactionCases();
void addKeyedCases();
void addSystemCases();
void addExpressionCases();
void addReferenceCases();
void addReflectionCases();
void addQueryCases();
void addSaveCases();

}  // namespace torvan::datamodel::benchmarks
