#include <torvan/datamodel.h>

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

using Keys = std::vector<std::uint16_t>;

Keys ascending(std::size_t size) {
  Keys keys(size);
  std::iota(keys.begin(), keys.end(), std::uint16_t{1});
  return keys;
}
Keys shuffled(std::size_t size) {
  Keys keys = ascending(size);
  std::shuffle(keys.begin(), keys.end(), Random(size));
  return keys;
}

class OurChildren {
 public:
  explicit OurChildren(const Keys& keys) : keys_(keys) {}

  void begin() { transaction_.emplace(model_); }
  void undo() { transaction_.reset(); }
  void insert() {
    for (const std::uint16_t key : keys_) array_->store(key, LatticeValue());
  }
  void remove() {
    for (const std::uint16_t key : keys_) array_->getValues().erase(key);
  }
  void destroy() { array_->destroy(); }
  std::size_t size() const { return array_ ? array_->getValues().size() : 0; }

 private:
  const Keys& keys_;
  orb::zero::Model model_ = orb::zero::Model::create();
  Array array_ = Array::Builder(model_).create();
  std::optional<orb::zero::Transaction> transaction_;
};

class RawChildren {
 public:
  explicit RawChildren(const Keys& keys) : keys_(keys) {}

  void begin() { isLogging_ = true; }
  void undo() {
    if (removed_.empty())
      for (const std::uint16_t key : keys_) content_.erase(key);
    for (auto& node : removed_) content_.insert(std::move(node));
  }
  void insert() {
    for (const std::uint16_t key : keys_)
      content_.emplace_hint(content_.end(), key, std::make_unique<Child>(newUuid_()));
  }
  void remove() {
    for (const std::uint16_t key : keys_) {
      const auto found = content_.find(key);
      if (isLogging_) {
        removed_.push_back(content_.extract(found));
      } else {
        topLevel_.push_back(std::move(found->second));
        content_.erase(found);
      }
    }
  }
  void destroy() { content_.clear(); }
  std::size_t size() const { return content_.size(); }

 private:
  using Child = RawElement<ArrayElem::Impl>;
  using Content = std::map<std::uint16_t, std::unique_ptr<Child>>;
  const Keys& keys_;
  orb::zero::UuidGenerator newUuid_;
  Content content_;
  bool isLogging_ = false;
  std::vector<Content::node_type> removed_;
  std::vector<std::unique_ptr<Child>> topLevel_;
};

/// A case that ends with the collection full, or empty.
template <class Children, class Prepare>
void addStep(const std::string& name, const Keys& keys, const std::string& side, Prepare prepare,
             void (Children::*step)(), bool full) {
  runSeldom(addCase(name, keys.size(), side,
                    [=](benchmark::State& state) {
                      std::optional<Children> children;
                      const auto make = [&] { children.emplace(keys), prepare(*children); };
                      measure(state, keys.size(), make, [&] { ((*children).*step)(); });
                      check(state, children->size() == (full ? keys.size() : 0));
                    }),
            3);
}

template <class Children>
void addSide(std::size_t size, const std::string& side) {
  const auto nothing = [](Children&) {};
  const auto fill = [](Children& children) { children.insert(); };
  const auto insertInTransaction = [](Children& children) { children.begin(), children.insert(); };
  const auto removeInTransaction = [](Children& children) {
    children.insert(), children.begin(), children.remove();
  };
  const auto add = [&](const char* name, const Keys& keys, auto prepare, auto step, bool full) {
    addStep<Children>(name, keys, side, prepare, step, full);
  };
  const Keys inOrder = ascending(size);
  add("keyed.insert", inOrder, nothing, &Children::insert, true);
  add("keyed.insert at random", shuffled(size), nothing, &Children::insert, true);
  add("keyed.remove", inOrder, fill, &Children::remove, false);
  add("keyed.undo insertions", inOrder, insertInTransaction, &Children::undo, false);
  add("keyed.undo removals", inOrder, removeInTransaction, &Children::undo, true);
  add("keyed.destroy owner", inOrder, fill, &Children::destroy, false);
}

/// An array type has two values, its bounds.
void addTypes(std::size_t size) {
  const auto children = static_cast<std::uint16_t>(size);
  runSeldom(addCase("keyed.array type", size, "ours", [=](benchmark::State& state) {
    std::optional<Session> session;
    ArrayType type;
    const auto make = [&] {
      type = session->typeFactory()->createArrayType("", LatticeType(), children);
    };
    measure(
        state, 2 * size, [&] { session.emplace(); }, make);
    check(
        state, Array { type->getTop() } -> getValues().size() == size);
    check(
        state, Array { type->getBottom() } -> getValues().size() == size);
  }));
  runSeldom(addCase("keyed.array type", size, "floor", [=](benchmark::State& state) {
    std::optional<RawChildren> bounds[2];
    const Keys keys = ascending(size);
    const auto forBoth = [&](auto step) { std::for_each(bounds, bounds + 2, step); };
    measure(
        state, 2 * size, [&] { forBoth([&](auto& bound) { bound.emplace(keys); }); },
        [&] { forBoth([](auto& bound) { bound->insert(); }); },
        [&] { forBoth([](auto& bound) { bound.reset(); }); });
  }));
}

/// Finds each of 10,000 children by its key, in a random order; the floor is a plain hash table.
template <class Owner, class K>
void addLookUp(const std::string& name, K (*keyOf)(std::uint16_t)) {
  constexpr std::size_t size = 10'000;
  std::vector<K> keys;
  for (const std::uint16_t key : shuffled(size)) keys.push_back(keyOf(key));
  const auto findAll = [keys](benchmark::State& state, auto find) {
    bool isFound = true;
    measure(state, size, [&] {
      for (const K& key : keys) isFound &= find(key);
    });
    check(state, isFound);
  };
  addCase(name, size, "ours", [=](benchmark::State& state) {
    const auto model = orb::zero::Model::create();
    const auto owner = typename Owner::Builder(model).create();
    for (const K& key : keys) owner->store(key, LatticeValue());
    const auto& children = owner->getValues();
    findAll(state, [&](const K& key) { return children.find(key) != nullptr; });
  });
  addCase(name, size, "floor", [=](benchmark::State& state) {
    std::unordered_map<K, const K*> children;
    for (const K& key : keys) children.emplace(key, &key);
    findAll(state, [&](const K& key) { return children.find(key)->second != nullptr; });
  });
}

}  // namespace

void addKeyedCases() {
  addLookUp<Array, std::uint16_t>("keyed.look up number", [](std::uint16_t key) { return key; });
  addLookUp<Struct, std::string>("keyed.look up text",
                                 [](std::uint16_t key) { return "field" + std::to_string(key); });

  for (const std::size_t size : {6'553u, 65'535u}) {
    addTypes(size);
    addSide<OurChildren>(size, "ours");
    addSide<RawChildren>(size, "floor");
  }
}

}  // namespace torvan::datamodel::benchmarks
