#include <torvan/datamodel.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

constexpr std::size_t changes = 1000;

/// A model of equations, of which the first ones change their right side.
class OurSides {
 public:
  explicit OurSides(std::size_t size = changes) {
    for (std::size_t i = 0; i < size; ++i) {
      const Equation equation = Equation::Builder(model_).create();
      if (i < changes) equations_.push_back(equation);
    }
  }

  void begin() { transaction_.emplace(model_); }
  void commit() { transaction_->commit(); }
  void rollback() { transaction_.reset(); }
  void setAll(bool second) {
    for (const Equation& equation : equations_) equation->setRhs(values_[second]);
  }
  void setOne(bool second) { equations_.front()->setRhs(values_[second]); }
  bool areAll(bool second) const {
    return std::all_of(equations_.begin(), equations_.end(), [&](const Equation& equation) {
      return equation->getRhs() == values_[second];
    });
  }

 private:
  orb::zero::Model model_ = orb::zero::Model::create();
  const Term values_[2] = {Variable::Builder(model_).create(), Variable::Builder(model_).create()};
  std::vector<Equation> equations_;
  std::optional<orb::zero::Transaction> transaction_;
};

/// Slots that are assigned without a guard; the log keeps copies of all of them.
class RawSides {
 public:
  explicit RawSides(std::size_t = changes) : slots_(changes) {}

  void begin() {
    log_.clear();
    for (const auto& slot : slots_) log_.push_back(std::make_unique<Record>(slot));
  }
  void commit() { log_.clear(); }
  void rollback() {
    for (std::size_t i = 0; i < log_.size(); ++i) slots_[i] = std::move(log_[i]->before);
    log_.clear();
  }
  void setAll(bool second) {
    for (auto& slot : slots_) slot = values_[second];
  }
  void setOne(bool second) { slots_.front() = values_[second]; }
  bool areAll(bool second) const {
    return std::all_of(slots_.begin(), slots_.end(),
                       [&](const Term& slot) { return slot == values_[second]; });
  }

 private:
  struct Record {
    explicit Record(const orb::zero::Slot<Term>& slot) : before(slot) {}
    orb::zero::Slot<Term> before;
  };
  orb::zero::Model model_ = orb::zero::Model::create();
  const Term values_[2] = {Variable::Builder(model_).create(), Variable::Builder(model_).create()};
  std::vector<orb::zero::Slot<Term>> slots_;
  std::vector<std::unique_ptr<Record>> log_;
};

template <class Sides>
void addSets(const std::string& side) {
  addCase("set.outside", changes, side, [](benchmark::State& state) {
    Sides sides;
    bool second = false;
    measure(state, changes, [&] { sides.setAll(second = !second); });
    check(state, sides.areAll(second));
  });
  addCase("set.first", changes, side, [](benchmark::State& state) {
    Sides sides;
    sides.setAll(false);
    measure(
        state, changes, [&] { sides.begin(); }, [&] { sides.setAll(true); },
        [&] { sides.rollback(); });
    check(state, sides.areAll(false));
  });
  addCase("set.repeated", changes, side, [](benchmark::State& state) {
    Sides sides;
    bool second = false;
    sides.begin();
    sides.setAll(second);
    measure(state, changes, [&] { sides.setAll(second = !second); });
    check(state, sides.areAll(second));
  });
  addCase("set.hot", changes, side, [](benchmark::State& state) {
    Sides sides;
    sides.begin();
    sides.setAll(false);
    measure(state, changes, [&] {
      for (std::size_t i = 0; i < changes; ++i) sides.setOne((i & 1) != 0);
    });
  });
  addCase("set.and roll back", changes, side, [](benchmark::State& state) {
    Sides sides;
    sides.setAll(false);
    measure(state, changes, [&] {
      sides.begin();
      sides.setAll(true);
      sides.rollback();
    });
    check(state, sides.areAll(false));
  });
}

template <class Sides>
void addCommit(std::size_t size, const std::string& side) {
  runSeldom(addCase("set.commit in model of", size, side,
                    [size](benchmark::State& state) {
                      Sides sides(size);
                      bool second = false;
                      const auto change = [&] { sides.begin(), sides.setAll(second = !second); };
                      measure(
                          state, changes, change, [&] { sides.commit(); },
                          [&] { sides.rollback(); });
                      check(state, sides.areAll(second));
                    }),
            30);
}

}  // namespace

void addTransactionCases() {
  addSets<OurSides>("ours");
  addSets<RawSides>("floor");
  for (const std::size_t size : {1'000u, 1'000'000u}) {
    addCommit<OurSides>(size, "ours");
    addCommit<RawSides>(size, "floor");
  }
}

}  // namespace torvan::datamodel::benchmarks
