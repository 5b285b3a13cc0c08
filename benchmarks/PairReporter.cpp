#include "benchmarks/PairReporter.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <utility>

namespace torvan::datamodel::benchmarks {
namespace {

using Run = benchmark::BenchmarkReporter::Run;

double counter(const Run& run, const char* name, double otherwise) {
  const auto found = run.counters.find(name);
  return found == run.counters.end() ? otherwise : found->second.value;
}

}  // namespace

void PairReporter::ReportRuns(const std::vector<Run>& repetitions) {
  const Run* best = nullptr;
  for (const Run& run : repetitions) {
    if (run.run_type != Run::RT_Iteration) continue;
    if (run.error_occurred) {
      hasFailed_ = true;
      best = &run;
      break;
    }
    if (!best || run.GetAdjustedCPUTime() < best->GetAdjustedCPUTime()) best = &run;
  }
  if (!best) return;
  ConsoleReporter::ReportRuns({*best});
  if (best->error_occurred) return;

  const std::string& name = best->run_name.function_name;
  const std::size_t slash = name.rfind('/');
  Case& entry =
      cases_.try_emplace(name.substr(0, slash), Case{best->family_index, {}}).first->second;
  entry.order = std::min(entry.order, best->family_index);
  entry.sides[name.substr(slash + 1)] = {best->GetAdjustedCPUTime() / counter(*best, "items", 1),
                                         counter(*best, "bytes", 0)};
}

void PairReporter::Finalize() {
  printTable("ns per item", &Side::nanoseconds);
  printTable("bytes per item", &Side::bytes);
}

void PairReporter::printTable(const char* unit, Value value) const {
  std::vector<std::pair<std::string, const Case*>> ordered;
  for (const auto& [name, entry] : cases_) {
    const auto ours = entry.sides.find("ours");
    if (ours != entry.sides.end() && ours->second.*value != 0) ordered.emplace_back(name, &entry);
  }
  if (ordered.empty()) return;
  std::sort(ordered.begin(), ordered.end(),
            [](const auto& a, const auto& b) { return a.second->order < b.second->order; });

  std::ostream& out = GetOutputStream();
  out << '\n'
      << std::left << std::setw(48) << unit << std::right << std::setw(14) << "ours"
      << std::setw(14) << "floor" << std::setw(11) << "ratio" << '\n'
      << std::fixed;
  for (const auto& [name, entry] : ordered) {
    const double ours = entry->sides.at("ours").*value;
    for (const auto& [side, measured] : entry->sides) {
      if (side == "ours") continue;
      const double floor = measured.*value;
      out << std::left << std::setw(48) << name + side.substr(5) << std::right
          << std::setprecision(1) << std::setw(14) << ours << std::setw(14) << floor
          << std::setprecision(2) << std::setw(11) << ours / floor << '\n';
    }
  }
}

}  // namespace torvan::datamodel::benchmarks
