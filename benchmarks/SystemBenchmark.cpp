#include <torvan/datamodel.h>

#include <memory>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

class OurSystem {
 public:
  static constexpr char name[] = "ours";
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
  std::size_t count() const { return system_ ? system_->getEquations().size() : 0; }

 private:
  orb::zero::Model model_ = orb::zero::Model::create();
  Variable variable_ = Variable::Builder(model_).create();
  System system_;
  std::vector<ModelElement::Impl*> equations_;
};

class RawSystem {
 public:
  static constexpr char name[] = "raw";
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
  std::size_t count() const { return size_; }

 private:
  using Element = RawElement<Equation::Impl>;
  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<Element>> all_;
  std::vector<Element*> content_, equations_;
  std::size_t size_ = 0;
};

/// A case whose sides go through one step, with the system built already or not.
template <class Step>
void add(Cases& cases, const char* name, std::size_t size, bool isBuilt, Step step) {
  const auto prepare = [=](auto& system) {
    system.emplace();
    if (isBuilt) system->build(size);
  };
  cases.push_back({.name = name,
                   .size = size,
                   .items = size,
                   .sides = entrants<OurSystem, RawSystem>([=]<class X>() {
                     return renewing<X>(prepare, [=](auto& system) { step(*system); });
                   })});
}

}  // namespace

void addSystemCases(Cases& cases) {
  for (const std::size_t size : {100'000u, 1'000'000u}) {
    add(cases, "system.build", size, false, [=](auto& system) { system.build(size); });
    add(cases, "system.remove one by one", size, true, [](auto& system) { system.remove(); });
    add(cases, "system.destroy", size, true, [](auto& system) { system.destroy(); });
  }
}

}  // namespace torvan::datamodel::benchmarks
