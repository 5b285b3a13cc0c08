#include <torvan/datamodel.h>

#include <algorithm>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
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
  static constexpr char name[] = "ours";
  explicit OurChildren(Keys keys) : keys_(std::move(keys)) {}

  void begin() { transaction_.emplace(model_); }
  void undo() { transaction_.reset(); }
  void insert() {
    for (const std::uint16_t key : keys_) array_->store(key, LatticeValue());
  }
  void remove() {
    for (const std::uint16_t key : keys_) array_->getValues().erase(key);
  }
  void destroy() { array_->destroy(); }
  std::size_t count() const { return array_ ? array_->getValues().size() : 0; }

 private:
  const Keys keys_;
  orb::zero::Model model_ = orb::zero::Model::create();
  Array array_ = Array::Builder(model_).create();
  std::optional<orb::zero::Transaction> transaction_;
};

class RawChildren {
 public:
  static constexpr char name[] = "raw";
  explicit RawChildren(Keys keys) : keys_(std::move(keys)) {}

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
  std::size_t count() const { return content_.size(); }

 private:
  using Child = RawElement<ArrayElem::Impl>;
  using Content = std::map<std::uint16_t, std::unique_ptr<Child>>;
  const Keys keys_;
  orb::zero::UuidGenerator newUuid_;
  Content content_;
  bool isLogging_ = false;
  std::vector<Content::node_type> removed_;
  std::vector<std::unique_ptr<Child>> topLevel_;
};

/// A case whose sides go through one step, after some that are not timed.
template <class Prepare, class Step>
void add(Cases& cases, const char* name, const Keys& keys, Prepare prepare, Step step) {
  cases.push_back({.name = name,
                   .size = keys.size(),
                   .items = keys.size(),
                   .sides = entrants<OurChildren, RawChildren>([=]<class X>() {
                     return renewing<X>([=](auto& children) { prepare(children.emplace(keys)); },
                                        [=](auto& children) { step(*children); });
                   })});
}

void addSteps(Cases& cases, std::size_t size) {
  const auto nothing = [](auto&) {};
  const auto insert = [](auto& children) { children.insert(); };
  const auto remove = [](auto& children) { children.remove(); };
  const auto undo = [](auto& children) { children.undo(); };
  const auto beginAndInsert = [](auto& children) { children.begin(), children.insert(); };
  const auto insertAndRemove = [](auto& children) {
    children.insert(), children.begin(), children.remove();
  };
  const Keys inOrder = ascending(size);
  add(cases, "keyed.insert", inOrder, nothing, insert);
  add(cases, "keyed.insert at random", shuffled(size), nothing, insert);
  add(cases, "keyed.remove", inOrder, insert, remove);
  add(cases, "keyed.undo insertions", inOrder, beginAndInsert, undo);
  add(cases, "keyed.undo removals", inOrder, insertAndRemove, undo);
  add(cases, "keyed.destroy owner", inOrder, insert, [](auto& children) { children.destroy(); });
}

/// An array type has two values, its bounds.
class OurBounds {
 public:
  static constexpr char name[] = "ours";
  void make(std::size_t size) {
    type_ = session_.typeFactory()->createArrayType("", LatticeType(),
                                                    static_cast<std::uint16_t>(size));
  }
  std::size_t count() const {
    return Array(type_->getTop())->getValues().size() +
           Array(type_->getBottom())->getValues().size();
  }

 private:
  Session session_;
  ArrayType type_;
};
class RawBounds {
 public:
  static constexpr char name[] = "raw";
  void make(std::size_t size) {
    for (auto& bound : bounds_) bound.emplace(ascending(size)).insert();
  }
  std::size_t count() const { return bounds_[0]->count() + bounds_[1]->count(); }

 private:
  std::optional<RawChildren> bounds_[2];
};

void addTypes(Cases& cases, std::size_t size) {
  cases.push_back({.name = "keyed.array type",
                   .size = size,
                   .items = 2 * size,
                   .sides = entrants<OurBounds, RawBounds>([=]<class X>() {
                     return renewing<X>([](auto& bounds) { bounds.emplace(); },
                                        [=](auto& bounds) { bounds->make(size); });
                   })});
}

/// Finds each of 10,000 children by its key, in a random order, and counts those that are there.
template <class K>
Side lookUp(std::vector<K> keys, auto find) {
  const auto found = std::make_shared<std::size_t>();
  return {.run =
              [=] {
                for (const K& key : keys) *found += find(key);
              },
          .prepare = [=] { *found = 0; },
          .result = [=] { return *found; }};
}
template <class Owner, class K>
void addLookUp(Cases& cases, const char* name, K (*keyOf)(std::uint16_t)) {
  constexpr std::size_t size = 10'000;
  std::vector<K> keys;
  for (const std::uint16_t key : shuffled(size)) keys.push_back(keyOf(key));
  const auto makeOurs = [=] {
    const auto owner = typename Owner::Builder(orb::zero::Model::create()).create();
    for (const K& key : keys) owner->store(key, LatticeValue());
    return lookUp(keys, [=](const K& key) { return owner->getValues().find(key) != nullptr; });
  };
  const auto makeRaw = [=] {
    std::unordered_map<K, bool> children;
    for (const K& key : keys) children.emplace(key, true);
    return lookUp(keys, [=](const K& key) { return children.find(key)->second; });
  };
  cases.push_back({.name = name,
                   .size = size,
                   .items = size,
                   .targets = {atMost(12)},
                   .sides = {{"ours", makeOurs}, {"raw", makeRaw}}});
}

}  // namespace

void addKeyedCases(Cases& cases) {
  addLookUp<Array, std::uint16_t>(cases, "keyed.look up number",
                                  [](std::uint16_t key) { return key; });
  addLookUp<Struct, std::string>(cases, "keyed.look up text",
                                 [](std::uint16_t key) { return "field" + std::to_string(key); });
  for (const std::size_t size : {6'553u, 65'535u}) {
    addTypes(cases, size);
    addSteps(cases, size);
  }
}

}  // namespace torvan::datamodel::benchmarks
