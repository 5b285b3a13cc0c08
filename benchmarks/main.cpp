#include <benchmark/benchmark.h>

#include <iterator>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/PairReporter.h"

/// Options are those of Google Benchmark; these come first, so that given ones win.
int main(int argc, char** argv) {
  using namespace torvan::datamodel::benchmarks;

  char interleave[] = "--benchmark_enable_random_interleaving=true";
  char repeat[] = "--benchmark_repetitions=5";
  char shortest[] = "--benchmark_min_time=0.01";
  std::vector<char*> arguments{argv[0], interleave, repeat, shortest};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);

  addPowerSetCases();
  addCompositeCases();
  addCreationCases();
  addTransactionCases();
  addKeyedCases();
  addSystemCases();
  addExpressionCases();
  addReferenceCases();

  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  PairReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return reporter.hasFailed() ? 1 : 0;
}
