#include <benchmark/benchmark.h>
#include <malloc.h>

#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/PairReporter.h"

namespace {

/// Has the allocator keep freed memory. Whether it would return blocks of a few KiB to the system,
/// at many times the cost of using them, depends on what the cases before left on the heap.
void keepFreedMemory() {
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
}

}  // namespace

/// Options are those of Google Benchmark; the defaults come first, so that given ones win.
int main(int argc, char** argv) {
  using namespace torvan::datamodel::benchmarks;

  keepFreedMemory();
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
  addReflectionCases();
  addQueryCases();
  addSaveCases();

  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  PairReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return reporter.hasFailed() ? 1 : 0;
}
