#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/Report.h"
#include "benchmarks/Runner.h"

namespace torvan::datamodel::benchmarks {
namespace {

constexpr char usage[] =
    "usage: torvan-benchmarks [--quick] [--json FILE] [NAME] [--benchmark_...]\n"
    "NAME is a regular expression that cases are to match; --quick leaves out what has a million "
    "items and repeats less.\n";

constexpr std::size_t large = 1'000'000;

struct Options {
  bool isQuick = false;
  std::string name;  // a regular expression
  std::string json;
  std::vector<std::string> passed;  // to Google Benchmark
};

Options parse(int argc, char** argv) {
  Options options;
  options.passed.emplace_back(argv[0]);
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--quick")
      options.isQuick = true;
    else if (argument == "--json" && i + 1 < argc)
      options.json = argv[++i];
    else if (!argument.starts_with('-'))
      options.name = argument;
    else
      options.passed.emplace_back(argument);
  }
  return options;
}

/// Says how far the run has come. The figures are reported at its end.
class Progress : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      std::cerr << run.run_name.function_name;
      if (run.error_occurred) std::cerr << ": FAILED: " << run.error_message;
      std::cerr << std::endl;
      hasFailed_ |= run.error_occurred;
    }
  }
  bool hasFailed() const noexcept { return hasFailed_; }

 private:
  bool hasFailed_ = false;
};

Cases allCases() {
  Cases cases;
  for (const auto add :
       {addPowerSetCases, addCompositeCases, addReclaimCases, addCreationCases, addTransactionCases,
        addKeyedCases, addSystemCases, addExpressionCases, addReferenceCases, addReflectionCases,
        addQueryCases, addSaveCases, addFixpointCases})
    add(cases);
  return cases;
}

/// A case takes its rounds by itself, so that those of its sides alternate.
void registerCase(const Case& measured, Effort effort, std::vector<Result>& results) {
  const auto body = [&measured, effort, &results](benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
      try {
        results.push_back(measure(measured, effort));
        state.SetIterationTime(results.back().find("ours")->least / measured.unit.perSecond);
      } catch (const std::exception& error) {
        state.SkipWithError(error.what());
        break;
      }
    }
  };
  benchmark::RegisterBenchmark(measured.title().c_str(), body)->Iterations(1)->UseManualTime();
}

/// Has the allocator keep freed memory. Whether it would return blocks of a few KiB to the system,
/// at many times the cost of using them, depends on what the cases before left on the heap.
void keepFreedMemory() {
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
}

int run(Options options) {
  keepFreedMemory();
  const Cases cases = allCases();
  std::vector<Result> results;
  const Effort effort = options.isQuick ? Effort{0.1, 2} : Effort{0.4, 3};
  const std::regex wanted(options.name);
  for (const Case& measured : cases) {
    if (options.isQuick && std::max(measured.size, measured.items) >= large) continue;
    if (std::regex_search(measured.title(), wanted)) registerCase(measured, effort, results);
  }

  std::vector<char*> arguments;
  for (std::string& argument : options.passed) arguments.push_back(argument.data());
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data(), [] { std::cout << usage; });
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  Progress progress;
  if (benchmark::RunSpecifiedBenchmarks(&progress) == 0) return 2;

  writeTable(std::cout, results);
  if (!options.json.empty()) {
    std::ofstream file(options.json);
    writeJson(file, results);
    if (!file) {
      std::cerr << "cannot write " << options.json << '\n';
      return 2;
    }
  }
  return progress.hasFailed() ? 1 : 0;
}

}  // namespace
}  // namespace torvan::datamodel::benchmarks

/// Ends with 1 when a result was wrong, and with 2 when the arguments were. A target that is missed
/// is shown, and no failure.
int main(int argc, char** argv) {
  namespace benchmarks = torvan::datamodel::benchmarks;
  try {
    return benchmarks::run(benchmarks::parse(argc, argv));
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
}
