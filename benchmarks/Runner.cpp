#include "benchmarks/Runner.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>

namespace torvan::datamodel::benchmarks {
namespace {

// In seconds: what takes longer is not repeated.
constexpr double patience = 20;
// What takes less is warmed up: by one run that does not count, or by several of a tenth of it.
constexpr double brief = 1e-3;

double threadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// What reading the clock adds to every time.
const double overhead = [] {
  double least = 1;
  for (int i = 0; i < 1000; ++i) {
    const double start = threadSeconds();
    least = std::min(least, threadSeconds() - start);
  }
  return least;
}();

double timeOfRun(const Side& side) {
  side.prepare();
  const double start = threadSeconds();
  side.run();
  return threadSeconds() - start - overhead;
}

class Trial {
 public:
  explicit Trial(const Case& measured) : case_(measured) {
    for (const Entrant& entrant : case_.sides) sides_.push_back(entrant.make());
    samples_.resize(sides_.size());
  }

  /// One run of each side. Those of the first round are compared.
  void measureRound() {
    for (std::size_t i = 0; i < sides_.size(); ++i) {
      const Side& side = sides_[i];
      if (!samples_[i].empty() && samples_[i].back() < brief) {  // the others have used the caches
        const double runs = brief / 10 / std::max(samples_[i].back(), brief / 1000);
        for (double run = 0; run < runs; ++run) {
          timeOfRun(side);
          side.finish();
        }
      }
      samples_[i].push_back(side.amount ? side.amount() : timeOfRun(side));
      if (samples_[i].size() == 1) compare(i);
      side.finish();
    }
  }
  bool isTimed() const { return !sides_.front().amount; }

  Result result() {
    Result result{&case_, samples_.front().size(), {}};
    const double scale = case_.unit.perSecond / static_cast<double>(case_.items);
    for (std::size_t i = 0; i < sides_.size(); ++i) {
      std::vector<double>& samples = samples_[i];
      std::sort(samples.begin(), samples.end());
      const Measured now{case_.sides[i].name, scale * samples.front(),
                         scale * samples[samples.size() / 2]};
      const auto same = std::find_if(result.sides.begin(), result.sides.end(),
                                     [&](const Measured& other) { return other.side == now.side; });
      if (same == result.sides.end())
        result.sides.push_back(now);
      else if (now.least < same->least)
        *same = now;
    }
    return result;
  }

 private:
  void compare(std::size_t i) {
    const std::uint64_t result = sides_[i].result();
    if (i == 0) expected_ = result;
    if (result != expected_)
      throw std::runtime_error(case_.sides[i].name + " does not compute what " +
                               case_.sides[0].name + " computes");
  }

  const Case& case_;
  std::uint64_t expected_ = 0;
  std::vector<Side> sides_;
  std::vector<std::vector<double>> samples_;  // of each side
};

}  // namespace

const Measured* Result::find(const std::string& side) const {
  const auto found = std::find_if(sides.begin(), sides.end(),
                                  [&](const Measured& measured) { return measured.side == side; });
  return found == sides.end() ? nullptr : &*found;
}

bool Result::meets(const Target& target) const {
  const Measured* const other = find(target.side);
  return find("ours")->least <= (other ? target.factor * other->least : 0) + target.more;
}

Result measure(const Case& measured, Effort effort) {
  Trial trial(measured);
  const double start = threadSeconds();
  double taken = 0;
  for (std::size_t round = 0; taken < effort.seconds || (round < effort.rounds && taken < patience);
       ++round) {
    trial.measureRound();
    if (!trial.isTimed()) break;
    taken = threadSeconds() - start;
  }
  return trial.result();
}

}  // namespace torvan::datamodel::benchmarks
