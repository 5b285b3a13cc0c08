#include <torvan/datamodel.h>

#include <memory>
#include <optional>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

class OurSystem {
 public:
  void build(std::size_t size) {
    SystemBuilder builder(model_);
    system_ = builder.build();
    equations_.reserve(size);
    for (std::size_t i = 0; i < size; ++i)
      equations_.push_back(builder.addEquation(variable_, variable_).get());
  }
  void remove() {
    for (ModelElement::Impl* const equation : equations_)
      system_->getEquations().remove(ModelElement(equation));
  }
  void destroy() { system_->destroy(); }
  std::size_t size() const { return system_ ? system_->getEquations().size() : 0; }

 private:
  orb::zero::Model model_ = orb::zero::Model::create();
  Variable variable_ = Variable::Builder(model_).create();
  System system_;
  std::vector<ModelElement::Impl*> equations_;
};

class RawSystem {
 public:
  void build(std::size_t size) {
    equations_.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
      all_.push_back(std::make_unique<Element>(newUuid_()));
      Element* const equation = equations_.emplace_back(all_.back().get());
      content_.push_back(equation);
      equation->owner = this;
      equation->place = static_cast<std::uint32_t>(i);
    }
    size_ = size;
  }
  void remove() {
    for (Element* const equation : equations_) {
      content_[equation->place] = nullptr;
      equation->owner = nullptr;
      --size_;
    }
  }
  void destroy() {
    content_.clear();
    all_.clear();
    size_ = 0;
  }
  std::size_t size() const { return size_; }

 private:
  using Element = RawElement<Equation::Impl>;
  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<Element>> all_;
  std::vector<Element*> content_, equations_;
  std::size_t size_ = 0;
};

template <class Made>
void addSide(std::size_t size, const std::string& side) {
  const auto add = [&](const char* name, bool isBuilt, auto step, std::size_t left) {
    runSeldom(addCase(name, size, side, [=](benchmark::State& state) {
      std::optional<Made> system;
      const auto prepare = [&] {
        system.emplace();
        if (isBuilt) system->build(size);
      };
      measure(state, size, prepare, [&] { step(*system); });
      check(state, system->size() == left);
    }));
  };
  add(
      "system.build", false, [=](Made& system) { system.build(size); }, size);
  add(
      "system.remove one by one", true, [](Made& system) { system.remove(); }, 0);
  add(
      "system.destroy", true, [](Made& system) { system.destroy(); }, 0);
}

}  // namespace

void addSystemCases() {
  for (const std::size_t size : {100'000u, 1'000'000u}) {
    addSide<OurSystem>(size, "ours");
    addSide<RawSystem>(size, "floor");
  }
}

}  // namespace torvan::datamodel::benchmarks
