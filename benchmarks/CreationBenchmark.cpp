#include <torvan/datamodel.h>

#include <memory>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/Memory.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

class OurVariables {
 public:
  static constexpr char name[] = "ours";
  void add() { Variable::Builder(model_).create(); }
  std::size_t count() const { return model_.size(); }

 private:
  orb::zero::Model model_ = orb::zero::Model::create();
};

class RawVariables {
 public:
  static constexpr char name[] = "raw";
  void add() { content_.push_back(std::make_unique<Element>(newUuid_())); }
  std::size_t count() const { return content_.size(); }

 private:
  using Element = RawElement<Variable::Impl>;
  static_assert(sizeof(Element) == sizeof(Variable::Impl));
  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<Element>> content_;
};

/// Elements with a text and two references.
class OurReferences {
 public:
  static constexpr char name[] = "ours";
  void add() {
    StructRef::Builder builder(model_);
    builder->setType(type_);
    builder->setExpr(variable_);
    builder->setField("field");
    builder.create();
  }

 private:
  orb::zero::Model model_ = orb::zero::Model::create();
  PowerSetType type_ = PowerSetType::Builder(model_).create();
  Variable variable_ = Variable::Builder(model_).create();
};

constexpr std::size_t bits = 64;

/// Joins of two sets, all kept.
class OurSets {
 public:
  static constexpr char name[] = "ours";
  void add() { a_.join(b_); }

 private:
  LatticeValue make(unsigned long word) {
    return session_.valueFactory()->createPowerSet(type_, BitSet(bits, word));
  }

  Session session_;
  PowerSetType type_ = session_.typeFactory()->createPowerSetType("P", bits);
  LatticeValue a_ = make(0x5555), b_ = make(0x3333);
};
class RawSets {
 public:
  static constexpr char name[] = "raw";
  void add() { content_.push_back(std::make_unique<RawSet>(newUuid_(), set_)); }

 private:
  const std::vector<std::uint64_t> set_{0x7777};
  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<RawSet>> content_;
};
class BoostSets {
 public:
  static constexpr char name[] = "boost";
  void add() { content_.emplace_back(bits, 0x7777); }

 private:
  std::vector<BitSet> content_;
};

/// How many bytes the allocator has handed out for all of them.
template <class Elements>
Side memoryOf(std::size_t size) {
  return {.amount = [=] {
    const double before = allocatedBytes();
    Elements elements;
    for (std::size_t i = 0; i < size; ++i) elements.add();
    return allocatedBytes() - before;
  }};
}

}  // namespace

void addCreationCases(Cases& cases) {
  for (const std::size_t size : {100'000u, 1'000'000u}) {
    const auto fill = [=](auto& variables) {
      for (std::size_t i = 0; i < size; ++i) variables->add();
    };
    const auto make = [](auto& variables) { variables.emplace(); };
    const auto makeFull = [=](auto& variables) { make(variables), fill(variables); };
    const auto end = [](auto& variables) { variables.reset(); };
    const auto add = [&](const char* name, double target, auto prepare, auto run) {
      cases.push_back({.name = name,
                       .size = size,
                       .items = size,
                       .targets = {timesOf(target, "raw")},
                       .sides = entrants<OurVariables, RawVariables>(
                           [=]<class X>() { return renewing<X>(prepare, run); })});
    };
    add("element.create", 1.6, make, fill);
    add("element.end of model", 2, makeFull, end);
  }
  const std::size_t size = 1'000'000;
  cases.push_back({.name = "memory.text and two references",
                   .size = size,
                   .items = size,
                   .unit = bytes,
                   .targets = {atMost(160)},
                   .sides = entrants<OurReferences>([=]<class X>() { return memoryOf<X>(size); })});
  cases.push_back({.name = "memory.power set of 64 bits",
                   .size = size,
                   .items = size,
                   .unit = bytes,
                   .targets = {atMost(144)},
                   .sides = entrants<OurSets, RawSets, BoostSets>(
                       [=]<class X>() { return memoryOf<X>(size); })});
}

}  // namespace torvan::datamodel::benchmarks
