#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace torvan::datamodel::benchmarks {

/// Takes the minimum over the repetitions of each case, in CPU time per item, and closes the run
/// with a table of ours beside the floor.
class PairReporter : public benchmark::ConsoleReporter {
 public:
  PairReporter() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& repetitions) override;
  void Finalize() override;
  /// Whether a case computed something wrong.
  bool hasFailed() const noexcept { return hasFailed_; }

 private:
  struct Side {
    double nanoseconds;
    double bytes;  // per item; 0 when not measured
  };
  struct Case {
    std::int64_t order;                 // that of the registration; runs arrive in any
    std::map<std::string, Side> sides;  // by "ours", "floor boost"
  };
  using Value = double Side::*;
  void printTable(const char* unit, Value value) const;

  std::map<std::string, Case> cases_;
  bool hasFailed_ = false;
};

}  // namespace torvan::datamodel::benchmarks
