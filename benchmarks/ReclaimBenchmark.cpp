#include <torvan/datamodel.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

constexpr std::size_t bits = 64;

unsigned long wordOf(std::size_t i) { return 0x9E3779B97F4A7C15 * (i + 1); }

/// Values, each of which gives way to its join with another one, in turn. What was dropped is
/// reclaimed whenever the model has doubled.
class OurRing {
 public:
  static constexpr char name[] = "ours";
  explicit OurRing(std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) ring_.push_back(make(wordOf(i)));
  }
  void restart() {
    for (std::size_t i = 0; i < ring_.size(); ++i) ring_[i] = make(wordOf(i));
    reclaim();
  }
  void join(std::size_t to, std::size_t other) {
    ring_[to] = ring_[to].join(ring_[other]);
    if (session_.model().size() >= reclaimAt_) reclaim();
  }
  std::uint64_t word(std::size_t i) const { return PowerSet(ring_[i])->getValue().to_ulong(); }

 private:
  LatticeValue make(unsigned long word) {
    return session_.valueFactory()->createPowerSet(type_, BitSet(bits, word));
  }
  void reclaim() {
    session_.model().reclaim();
    reclaimAt_ = 2 * session_.model().size();
  }

  Session session_;
  PowerSetType type_ = session_.typeFactory()->createPowerSetType("P", bits);
  std::vector<LatticeValue> ring_;
  std::size_t reclaimAt_ = 0;
};

class RawRing {
 public:
  static constexpr char name[] = "raw";
  explicit RawRing(std::size_t size) : ring_(size) { restart(); }
  void restart() {
    for (std::size_t i = 0; i < ring_.size(); ++i) ring_[i] = make(wordOf(i));
  }
  void join(std::size_t to, std::size_t other) {
    ring_[to].reset(ring_[to]->join(newUuid_(), *ring_[other]));
  }
  std::uint64_t word(std::size_t i) const { return ring_[i]->words.front(); }

 private:
  std::unique_ptr<RawSet> make(unsigned long word) {
    return std::make_unique<RawSet>(newUuid_(), std::vector<std::uint64_t>{word});
  }

  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<RawSet>> ring_;
};

}  // namespace

void addReclaimCases(Cases& cases) {
  for (const std::size_t live : {100u, 1'000u, 10'000u, 100'000u}) {
    const std::size_t joins = std::max<std::size_t>(4 * live, 10'000);
    cases.push_back({.name = "powerset.join and reclaim",
                     .size = live,
                     .items = joins,
                     .targets = {timesOf(2.5, "raw")},
                     .sides = entrants<OurRing, RawRing>([=]<class Ring>() {
                       const auto ring = std::make_shared<Ring>(live);
                       return Side{.run =
                                       [=] {
                                         for (std::size_t i = 0; i < joins; ++i)
                                           ring->join(i % live, (i + 1) % live);
                                       },
                                   .prepare = [=] { ring->restart(); },
                                   .result =
                                       [=] {
                                         std::uint64_t sum = 0;
                                         for (std::size_t i = 0; i < live; ++i)
                                           sum = orb::zero::hashCombine(sum, ring->word(i));
                                         return sum;
                                       }};
                     })});
  }
}

}  // namespace torvan::datamodel::benchmarks
