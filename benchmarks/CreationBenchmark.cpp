#include <malloc.h>
#include <torvan/datamodel.h>

#include <memory>
#include <optional>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

class OurVariables {
 public:
  void add() { Variable::Builder(model_).create(); }
  std::size_t size() const { return model_.size(); }

 private:
  orb::zero::Model model_ = orb::zero::Model::create();
};

class RawVariables {
 public:
  void add() { content_.push_back(std::make_unique<Element>(newUuid_())); }
  std::size_t size() const { return content_.size(); }

 private:
  using Element = RawElement<Variable::Impl>;
  static_assert(sizeof(Element) == sizeof(Variable::Impl));
  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<Element>> content_;
};

std::size_t allocatedBytes() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

template <class Variables>
void addSide(std::size_t size, const std::string& side) {
  const auto fill = [size](std::optional<Variables>& variables) {
    for (std::size_t i = 0; i < size; ++i) variables->add();
  };
  runSeldom(addCase("element.create", size, side, [=](benchmark::State& state) {
    std::optional<Variables> variables;
    std::size_t before = 0;
    const auto prepare = [&] {
      variables.reset();
      before = allocatedBytes();
      variables.emplace();
    };
    measure(state, size, prepare, [&] { fill(variables); });
    check(state, variables->size() == size);
    const std::size_t bytes = allocatedBytes() - before;
    state.counters["bytes"] = static_cast<double>(bytes) / static_cast<double>(size);
  }));
  runSeldom(addCase("element.end of model", size, side, [=](benchmark::State& state) {
    std::optional<Variables> variables;
    const auto prepare = [&] { variables.emplace(), fill(variables); };
    measure(state, size, prepare, [&] { variables.reset(); });
  }));
}

}  // namespace

void addCreationCases() {
  for (const std::size_t size : {100'000u, 1'000'000u}) {
    addSide<OurVariables>(size, "ours");
    addSide<RawVariables>(size, "floor");
  }
}

}  // namespace torvan::datamodel::benchmarks
