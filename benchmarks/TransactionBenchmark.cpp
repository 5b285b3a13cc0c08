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
  static constexpr char name[] = "ours";
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
  std::size_t countOfSecond() const {
    return static_cast<std::size_t>(std::count_if(
        equations_.begin(), equations_.end(),
        [&](const Equation& equation) { return equation->getRhs() == values_[true]; }));
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
  static constexpr char name[] = "raw";
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
  std::size_t countOfSecond() const {
    return static_cast<std::size_t>(std::count_if(
        slots_.begin(), slots_.end(), [&](const Term& slot) { return slot == values_[true]; }));
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

/// A case whose sides go through the same steps, from all first values. What is final cannot be
/// rolled back any more.
template <class Prepare, class Run, class Finish>
void add(Cases& cases, const char* name, std::size_t size, std::vector<Target> targets,
         Prepare prepare, Run run, Finish finish, bool isFinal = false) {
  cases.push_back({.name = name,
                   .size = size,
                   .items = changes,
                   .targets = std::move(targets),
                   .sides = entrants<OurSides, RawSides>([=]<class X>() {
                     const auto sides = std::make_shared<X>(size);
                     sides->setAll(false);
                     return Side{.run = [=] { run(*sides); },
                                 .prepare = [=] { prepare(*sides); },
                                 .finish = [=] { finish(*sides); },
                                 .result =
                                     [=] {
                                       if (isFinal) sides->rollback();  // without effect
                                       return sides->countOfSecond();
                                     }};
                   })});
}

}  // namespace

void addTransactionCases(Cases& cases) {
  const auto nothing = [](auto&) {};
  const auto begin = [](auto& sides) { sides.begin(); };
  const auto change = [](auto& sides) { sides.setAll(true); };
  const auto beginAndChange = [](auto& sides) { sides.begin(), sides.setAll(true); };
  const auto changeBack = [](auto& sides) { sides.setAll(false); };
  const auto commit = [](auto& sides) { sides.commit(); };
  const auto rollBack = [](auto& sides) { sides.rollback(); };
  const auto changeOne = [](auto& sides) {
    for (std::size_t i = 0; i < changes; ++i) sides.setOne((i & 1) != 0);
  };
  const auto changeAndRollBack = [](auto& sides) {
    sides.begin(), sides.setAll(true), sides.rollback();
  };
  add(cases, "set.outside", changes, {}, nothing, change, changeBack);
  add(cases, "set.first", changes, {atMost(40)}, begin, change, rollBack);
  add(cases, "set.repeated", changes, {atMost(25)}, beginAndChange, changeBack, rollBack);
  add(cases, "set.hot", changes, {atMost(6)}, begin, changeOne, rollBack);
  add(cases, "set.and roll back", changes, {atMost(130)}, nothing, changeAndRollBack, nothing);
  for (const std::size_t size : {1'000u, 1'000'000u})
    add(cases, "set.commit in model of", size, {atMost(25)}, beginAndChange, commit, changeBack,
        true);
}

}  // namespace torvan::datamodel::benchmarks
