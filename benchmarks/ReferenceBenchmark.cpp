#include <torvan/datamodel.h>

#include <algorithm>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

using orb::zero::Model;
using orb::zero::uuid;

constexpr std::size_t lookUps = 1000, copies = 10'000;

std::vector<uuid> newUuids(std::size_t size) {
  orb::zero::UuidGenerator newUuid;
  std::vector<uuid> ids(size);
  std::generate(ids.begin(), ids.end(), std::ref(newUuid));
  return ids;
}

class OurIndex {
 public:
  static constexpr char name[] = "ours";
  explicit OurIndex(const std::vector<uuid>& ids) {
    for (const uuid& id : ids) Variable::Builder(model_).create(id);
    model_.find(ids.front());  // makes the index
  }
  bool finds(const uuid& id) const { return static_cast<bool>(model_.find(id)); }

 private:
  Model model_ = Model::create();
};

class RawIndex {
 public:
  static constexpr char name[] = "raw";
  explicit RawIndex(const std::vector<uuid>& ids) {
    for (const uuid& id : ids)
      content_.emplace(id, std::make_unique<RawElement<Variable::Impl>>(id));
  }
  bool finds(const uuid& id) const {
    const auto found = content_.find(id);
    return found != content_.end() && found->second->id == id;
  }

 private:
  std::unordered_map<uuid, std::unique_ptr<RawElement<Variable::Impl>>, orb::zero::UuidHash>
      content_;
};

void addLookUp(Cases& cases, std::size_t size) {
  cases.push_back({.name = "uuid.look up",
                   .size = size,
                   .items = lookUps,
                   .sides = entrants<OurIndex, RawIndex>([=]<class X>() {
                     std::vector<uuid> ids = newUuids(size);
                     const auto index = std::make_shared<X>(ids);
                     std::shuffle(ids.begin(), ids.end(), Random(size));
                     check(!index->finds(uuid{}));
                     const auto next = std::make_shared<std::size_t>(),
                                found = std::make_shared<std::size_t>();
                     return Side{.run =
                                     [=] {
                                       for (std::size_t i = 0; i < lookUps; ++i)
                                         *found += index->finds(ids[(*next)++ % size]);
                                     },
                                 .prepare = [=] { *found = 0; },
                                 .result = [=] { return *found; }};
                   })});
}

struct Counted : boost::intrusive_ref_counter<Counted, boost::thread_unsafe_counter> {};

template <class H>
Side copiesOf(H handle) {
  return {.run = [handle = std::move(handle)] {
    for (std::size_t i = 0; i < copies; ++i) {
      auto copy = handle;
      benchmark::DoNotOptimize(copy);
    }
  }};
}
void addHandles(Cases& cases) {
  cases.push_back(
      {.name = "handle.copy and drop",
       .size = 1,
       .items = copies,
       .targets = {timesOf(1.3, "raw")},
       .sides = {{"ours", [] { return copiesOf(Variable::Builder(Model::create()).create()); }},
                 {"raw", [] { return copiesOf(boost::intrusive_ptr<Counted>(new Counted)); }}}});
}

constexpr std::size_t destroyed = 100;
enum class Referrer { None, Near, Far };

/// Elements to destroy in a model of other elements. The equation that refers to one was made right
/// after it, after all others, or does not exist.
class OurReferred {
 public:
  static constexpr char name[] = "ours";
  OurReferred(std::size_t size, Referrer referrer) {
    for (std::size_t i = 0; i < destroyed; ++i) {
      referred_.push_back(Variable::Builder(model_).create());
      if (referrer == Referrer::Near) refer(referred_.back());
    }
    for (std::size_t i = 0; i < size; ++i) Equation::Builder(model_).create();
    if (referrer != Referrer::Far) return;
    for (const Variable& variable : referred_) refer(variable);
  }
  void destroyAll() {
    for (const Variable& variable : referred_) variable->destroy();
  }
  /// References that are left.
  std::size_t count() const {
    return static_cast<std::size_t>(
        std::count_if(referrers_.begin(), referrers_.end(),
                      [](const Equation& equation) { return equation->hasLhs(); }));
  }

 private:
  void refer(const Variable& variable) {
    Equation::Builder builder(model_);
    builder->setLhs(variable);
    referrers_.push_back(builder.create());
  }

  Model model_ = Model::create();
  std::vector<Variable> referred_;
  std::vector<Equation> referrers_;
};

/// Every element knows the pointers to it.
class RawReferred {
 public:
  static constexpr char name[] = "raw";
  RawReferred(std::size_t size, Referrer referrer) : referrers_(destroyed) {
    for (Element*& pointer : referrers_) {
      referred_.push_back(std::make_unique<Element>(newUuid_()));
      if (referrer == Referrer::None) continue;
      pointer = referred_.back().get();
      pointer->owner = &pointer;
    }
    for (std::size_t i = 0; i < size; ++i) others_.push_back(std::make_unique<Element>(newUuid_()));
  }
  void destroyAll() {
    for (auto& element : referred_) {
      if (element->owner) *static_cast<Element**>(element->owner) = nullptr;
      element.reset();
    }
  }
  std::size_t count() const {
    return static_cast<std::size_t>(
        std::count_if(referrers_.begin(), referrers_.end(), std::identity()));
  }

 private:
  using Element = RawElement<Variable::Impl>;
  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<Element>> referred_, others_;
  std::vector<Element*> referrers_;
};

void addDestroy(Cases& cases, const char* name, std::size_t size, Referrer referrer) {
  cases.push_back({.name = name,
                   .size = size,
                   .items = destroyed,
                   .targets = {atMost(500)},
                   .sides = entrants<OurReferred, RawReferred>([=]<class X>() {
                     return renewing<X>([=](auto& referred) { referred.emplace(size, referrer); },
                                        [](auto& referred) { referred->destroyAll(); });
                   })});
}

}  // namespace

void addReferenceCases(Cases& cases) {
  for (const std::size_t size : {1'000u, 1'000'000u}) addLookUp(cases, size);
  addHandles(cases);
  for (const std::size_t size : {1'000u, 100'000u, 1'000'000u}) {
    addDestroy(cases, "destroy.referred to by none", size, Referrer::None);
    addDestroy(cases, "destroy.referrer near", size, Referrer::Near);
    addDestroy(cases, "destroy.referrer far", size, Referrer::Far);
  }
}

}  // namespace torvan::datamodel::benchmarks
