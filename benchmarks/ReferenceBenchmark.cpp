#include <torvan/datamodel.h>

#include <algorithm>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

using orb::zero::Model;
using orb::zero::uuid;

constexpr std::size_t lookUps = 1000;

std::vector<uuid> newUuids(std::size_t size) {
  orb::zero::UuidGenerator newUuid;
  std::vector<uuid> ids(size);
  std::generate(ids.begin(), ids.end(), std::ref(newUuid));
  return ids;
}

class OurIndex {
 public:
  explicit OurIndex(const std::vector<uuid>& ids) {
    for (const uuid& id : ids) Variable::Builder(model_).create(id);
    first_ = model_.find(ids.front());
  }
  bool finds(const uuid& id) const { return static_cast<bool>(model_.find(id)); }

 private:
  Model model_ = Model::create();
  ModelElement first_;
};

class RawIndex {
 public:
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

template <class Index>
void addLookUp(std::size_t size, const std::string& side) {
  runSeldom(addCase("uuid.look up", size, side,
                    [size](benchmark::State& state) {
                      std::vector<uuid> ids = newUuids(size);
                      const Index index(ids);
                      std::shuffle(ids.begin(), ids.end(), Random(size));
                      check(state, index.finds(ids.back()) && !index.finds(uuid{}));
                      std::size_t next = 0, found = 0;
                      measure(state, lookUps, [&] {
                        for (std::size_t i = 0; i < lookUps; ++i)
                          found += index.finds(ids[next++ % size]);
                      });
                      check(state, found == next);
                    }),
            100);
}

struct Counted : boost::intrusive_ref_counter<Counted, boost::thread_unsafe_counter> {};

void addHandles() {
  const auto copies = [](const auto& handle) {
    return [handle](benchmark::State& state) {
      measure(state, 1, [&] {
        auto copy = handle;
        benchmark::DoNotOptimize(copy);
      });
    };
  };
  addCase("handle.copy and drop", 1, "ours", [=](benchmark::State& state) {
    copies(Variable::Builder(Model::create()).create())(state);
  });
  addCase("handle.copy and drop", 1, "floor", [=](benchmark::State& state) {
    copies(boost::intrusive_ptr<Counted>(new Counted))(state);
  });
}

constexpr std::size_t destroyed = 100;
enum class Referrer { None, Near, Far };

/// Elements to destroy in a model of other elements. The equation that refers to one was made right
/// after it, after all others, or does not exist.
class OurReferred {
 public:
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
  bool isCleared() const {
    return std::none_of(referrers_.begin(), referrers_.end(),
                        [](const Equation& equation) { return equation->hasLhs(); });
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
  RawReferred(std::size_t, Referrer referrer) : referrers_(destroyed) {
    for (Element*& pointer : referrers_) {
      referred_.push_back(std::make_unique<Element>(newUuid_()));
      if (referrer == Referrer::None) continue;
      pointer = referred_.back().get();
      pointer->owner = &pointer;
    }
  }
  void destroyAll() {
    for (auto& element : referred_) {
      if (element->owner) *static_cast<Element**>(element->owner) = nullptr;
      element.reset();
    }
  }
  bool isCleared() const {
    return std::none_of(referrers_.begin(), referrers_.end(), std::identity());
  }

 private:
  using Element = RawElement<Variable::Impl>;
  orb::zero::UuidGenerator newUuid_;
  std::vector<std::unique_ptr<Element>> referred_;
  std::vector<Element*> referrers_;
};

template <class Referred>
void addDestroy(const std::string& name, std::size_t size, const std::string& side,
                Referrer referrer) {
  runSeldom(addCase(name, size, side, [=](benchmark::State& state) {
    std::optional<Referred> referred;
    measure(
        state, destroyed, [&] { referred.emplace(size, referrer); },
        [&] { referred->destroyAll(); });
    check(state, referred->isCleared());
  }));
}

}  // namespace

void addReferenceCases() {
  for (const std::size_t size : {1'000u, 1'000'000u}) {
    addLookUp<OurIndex>(size, "ours");
    addLookUp<RawIndex>(size, "floor");
  }
  addHandles();
  for (const auto& [name, referrer] : {std::pair{"destroy.referred to by none", Referrer::None},
                                       std::pair{"destroy.referrer near", Referrer::Near},
                                       std::pair{"destroy.referrer far", Referrer::Far}}) {
    for (const std::size_t size : {1'000u, 100'000u, 1'000'000u}) {
      addDestroy<OurReferred>(name, size, "ours", referrer);
      addDestroy<RawReferred>(name, size, "floor", referrer);
    }
  }
}

}  // namespace torvan::datamodel::benchmarks
