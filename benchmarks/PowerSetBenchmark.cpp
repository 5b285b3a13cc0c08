#include <torvan/datamodel.h>

#include <cstdlib>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

constexpr std::size_t kept = 256;  // results alive before all are let go

struct Operands {
  BitSet a, b;
};

BitSet randomBits(std::size_t size, Random& random) {
  BitSet bits(size);
  for (std::size_t bit = 0; bit < size; ++bit) bits[bit] = random() & 1;
  return bits;
}
Operands unrelated(std::size_t size) {
  Random random(size);
  BitSet a = randomBits(size, random);
  return {std::move(a), randomBits(size, random)};
}
Operands equal(std::size_t size) { return {unrelated(size).a, unrelated(size).a}; }
/// Equal but for the bits at the end, so that all words have to be looked at.
Operands differingLate(std::size_t size, bool lastOfA, bool lastOfB) {
  Operands sets = equal(size);
  sets.a[size - 1] = lastOfA;
  sets.b[size - 1] = lastOfB;
  sets.a[size - 2] = false;
  sets.b[size - 2] = lastOfA;
  return sets;
}
Operands below(std::size_t size) { return differingLate(size, false, true); }
Operands above(std::size_t size) { return {below(size).b, below(size).a}; }
Operands incomparable(std::size_t size) { return differingLate(size, true, false); }

class OurSets {
 public:
  explicit OurSets(const Operands& sets)
      : type_(session_.typeFactory()->createPowerSetType(
            "P", static_cast<std::uint16_t>(sets.a.size()))),
        a_(session_.valueFactory()->createPowerSet(type_, sets.a)),
        b_(session_.valueFactory()->createPowerSet(type_, sets.b)) {}

  void join() { benchmark::DoNotOptimize(a_.join(b_)); }
  void letGo() { session_.model().reclaim(); }
  boolean3 le() const { return a_.le(b_); }
  bool eq() const { return a_.eq(b_); }
  BitSet joined() {
    return PowerSet { a_.join(b_) } -> getValue();
  }

 protected:
  Session session_;

 private:
  PowerSetType type_;
  LatticeValue a_, b_;
};

class OurSetsInTransaction : public OurSets {
 public:
  using OurSets::OurSets;

 private:
  orb::zero::Transaction transaction_{session_.model()};
};

class BoostSets {
 public:
  explicit BoostSets(Operands sets) : sets_(std::move(sets)) { results_.reserve(kept); }

  void join() {
    results_.push_back(sets_.a);
    results_.back() |= sets_.b;
  }
  void letGo() { results_.clear(); }
  boolean3 le() const {
    if (sets_.a.is_subset_of(sets_.b)) return boolean3::T;
    return sets_.b.is_subset_of(sets_.a) ? boolean3::F : boolean3::NA;
  }
  bool eq() const { return sets_.a == sets_.b; }
  BitSet joined() { return join(), results_.back(); }

 private:
  Operands sets_;
  std::vector<BitSet> results_;
};

class WordSets {
 public:
  explicit WordSets(const Operands& sets) : size_(sets.a.size()) {
    boost::to_block_range(sets.a, std::back_inserter(a_));
    boost::to_block_range(sets.b, std::back_inserter(b_));
    results_.reserve(kept);
  }

  void join() {
    auto* const result = static_cast<unsigned long*>(std::malloc(a_.size() * sizeof(a_[0])));
    for (std::size_t i = 0; i < a_.size(); ++i) result[i] = a_[i] | b_[i];
    results_.emplace_back(result);
  }
  void letGo() { results_.clear(); }
  BitSet joined() {
    join();
    BitSet bits(size_);
    boost::from_block_range(results_.back().get(), results_.back().get() + a_.size(), bits);
    return bits;
  }

 private:
  struct Free {
    void operator()(void* memory) const noexcept { std::free(memory); }
  };
  std::size_t size_;
  std::vector<unsigned long> a_, b_;
  std::vector<std::unique_ptr<unsigned long[], Free>> results_;
};

template <class Sets>
void addJoin(const std::string& name, std::size_t size, const std::string& side) {
  addCase(name, size, side, [size](benchmark::State& state) {
    const Operands operands = unrelated(size);
    BitSet right(size);
    for (std::size_t bit = 0; bit < size; ++bit) right[bit] = operands.a[bit] || operands.b[bit];
    Sets sets(operands);
    check(state, sets.joined() == right);
    sets.letGo();
    measure(state, kept, [&] {
      for (std::size_t i = 0; i < kept; ++i) sets.join();
      sets.letGo();
    });
  });
}

template <class Sets, class Answer>
void addTest(const std::string& name, std::size_t size, const std::string& side,
             Operands (*operands)(std::size_t), Answer (Sets::*test)() const, Answer right) {
  addCase(name, size, side, [=](benchmark::State& state) {
    const Sets sets(operands(size));
    check(state, (sets.*test)() == right);
    measure(state, 1, [&] { benchmark::DoNotOptimize((sets.*test)()); });
  });
}

template <class Sets>
void addTests(std::size_t size, const std::string& side) {
  addTest<Sets>("powerset.le below", size, side, below, &Sets::le, boolean3::T);
  addTest<Sets>("powerset.le above", size, side, above, &Sets::le, boolean3::F);
  addTest<Sets>("powerset.le incomparable", size, side, incomparable, &Sets::le, boolean3::NA);
  addTest<Sets>("powerset.eq", size, side, equal, &Sets::eq, true);
}

}  // namespace

void addPowerSetCases() {
  for (const std::size_t size : {64u, 256u, 4096u, 65535u}) {
    addJoin<OurSets>("powerset.join", size, "ours");
    addJoin<OurSetsInTransaction>("powerset.join in transaction", size, "ours");
    for (const char* const name : {"powerset.join", "powerset.join in transaction"}) {
      addJoin<BoostSets>(name, size, "floor boost");
      addJoin<WordSets>(name, size, "floor words");
    }
    addTests<OurSets>(size, "ours");
    addTests<BoostSets>(size, "floor boost");
  }
}

}  // namespace torvan::datamodel::benchmarks
