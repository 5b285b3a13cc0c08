#include <torvan/datamodel.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/SetPair.h"

namespace torvan::datamodel::benchmarks {
namespace {

/// One of so many bits is set.
Words randomWords(std::size_t size, std::size_t oneOf, Random& random) {
  Words words((size + 63) / 64);
  for (std::size_t bit = 0; bit < size; ++bit)
    words[bit / 64] |= std::uint64_t{random() % oneOf == 0} << bit % 64;
  return words;
}
Operands unrelated(std::size_t size, std::size_t oneOf) {
  Random random(size);
  Words a = randomWords(size, oneOf, random);
  return {size, std::move(a), randomWords(size, oneOf, random)};
}
Operands dense(std::size_t size) { return unrelated(size, 2); }
Operands sparse(std::size_t size) { return unrelated(size, 1024); }
Operands equal(std::size_t size) {
  const Words words = dense(size).a;
  return {size, words, words};
}
/// Equal but for the last bit, so that all words have to be looked at.
Operands differing(std::size_t size, bool isInA) {
  Operands sets = equal(size);
  const std::uint64_t last = std::uint64_t{1} << (size - 1) % 64;
  (isInA ? sets.a : sets.b).back() |= last;
  (isInA ? sets.b : sets.a).back() &= ~last;
  return sets;
}
Operands below(std::size_t size) { return differing(size, false); }
Operands above(std::size_t size) { return differing(size, true); }

/// A power set of a session, which it shares with the other one of the pair.
class OurSet {
 public:
  explicit OurSet(LatticeValue value) : value_(std::move(value)) {}

  OurSet join(const OurSet& other) const { return OurSet(value_.join(other.value_)); }
  OurSet meet(const OurSet& other) const { return OurSet(value_.meet(other.value_)); }
  boolean3 le(const OurSet& other) const { return value_.le(other.value_); }
  bool eq(const OurSet& other) const { return value_.eq(other.value_); }
  template <class Use>
  void forEach(Use use) const {
    const BitSet bits = PowerSet(value_)->getValue();
    for (auto bit = bits.find_first(); bit != bits.npos; bit = bits.find_next(bit)) use(bit);
  }

 private:
  LatticeValue value_;
};

enum class Transactions { Open, Own };

/// Results stay in the model until the run is over; what it takes to end them is not timed here.
template <Transactions transactions>
class OurPair : public SetPair {
 public:
  explicit OurPair(const Operands& sets)
      : type_(
            session_.typeFactory()->createPowerSetType("P", static_cast<std::uint16_t>(sets.size))),
        pair_(setOf(sets.a), setOf(sets.b)) {
    if (transactions == Transactions::Open) open_.emplace(session_.model());
  }

  void repeat(Operation operation, std::size_t times) override { pair_.repeat(operation, times); }
  std::uint64_t outcome(Operation operation) override { return pair_.outcome(operation); }
  void finish() override { session_.model().reclaim(); }

 private:
  OurSet setOf(const Words& words) {
    BitSet bits(words.begin(), words.end());
    bits.resize(type_->getNumElems());
    return OurSet(session_.valueFactory()->createPowerSet(type_, bits));
  }

  Session session_;
  PowerSetType type_;
  PairOf<OurSet> pair_;
  std::optional<orb::zero::Transaction> open_;
};

template <Transactions transactions>
std::unique_ptr<SetPair> makeOurPair(const Operands& sets) {
  return std::make_unique<OurPair<transactions>>(sets);
}

struct Implementation {
  const char* name;
  std::unique_ptr<SetPair> (*make)(const Operands&);
};
using Implementations = std::vector<Implementation>;

const Implementations all = {{"ours", makeOurPair<Transactions::Open>},
                             {"raw", makeRawPair},
                             {"boost", makeBoostPair<16>},
                             {"boost", makeBoostPair<32>},
                             {"boost", makeBoostPair<64>},
                             {"BitVector", makeBitVectorPair},
                             {"SparseBitVector", makeSparseBitVectorPair},
                             {"CRoaring", makeRoaringPair}};
const Implementations transactions = {{"ours", makeOurPair<Transactions::Own>},
                                      {"open", makeOurPair<Transactions::Open>}};

class PowerSetCases {
 public:
  explicit PowerSetCases(Cases& cases) : cases_(cases) {}

  void add(const char* name, Operation operation, Operands (*operands)(std::size_t),
           std::size_t size, std::vector<Target> targets,
           const Implementations& implementations = all) {
    const bool isMade = operation == Operation::Join || operation == Operation::Meet;
    const std::size_t times = (isMade ? 1 : 20) * keptOf(size);
    Case& added = cases_.emplace_back(Case{
        .name = name, .size = size, .items = times, .targets = std::move(targets), .sides = {}});
    for (const auto& [side, make] : implementations)
      added.sides.push_back({side, [=, make = make] {
                               const std::shared_ptr<SetPair> pair = make(operands(size));
                               return Side{.run = [=] { pair->repeat(operation, times); },
                                           .finish = [=] { pair->finish(); },
                                           .result = [=] { return pair->outcome(operation); }};
                             }});
  }

 private:
  /// As many values as stay in the cache of a core.
  static std::size_t keptOf(std::size_t size) {
    return std::clamp<std::size_t>((std::size_t{1} << 18) / (size / 8 + 100), 32, 1000);
  }

  Cases& cases_;
};

}  // namespace

void addPowerSetCases(Cases& to) {
  PowerSetCases cases(to);
  for (const auto& [size, factor] : {std::pair{64u, 1.5}, {4096u, 1.0}, {65535u, 0.6}}) {
    const std::vector<Target> target{timesOf(factor, "boost")};
    cases.add("powerset.join", Operation::Join, dense, size, target);
    cases.add("powerset.meet", Operation::Meet, dense, size, target);
    cases.add("powerset.join, own transaction", Operation::Join, dense, size,
              {timesOf(1, "open", 10)}, transactions);
  }
  cases.add("powerset.join, sparse", Operation::Join, sparse, 65535, {});
  for (const std::size_t size : {64u, 1024u, 4096u, 65535u}) {
    std::vector<Target> target;
    if (size >= 1024) target.push_back(timesOf(0.5, "boost"));
    cases.add("powerset.le, below", Operation::Le, below, size, target);
    cases.add("powerset.le, above", Operation::Le, above, size, target);
    cases.add("powerset.le, incomparable", Operation::Le, dense, size, {atMost(10)});
    cases.add("powerset.eq", Operation::Eq, equal, size, {timesOf(1.2, "boost")});
  }
}

}  // namespace torvan::datamodel::benchmarks
