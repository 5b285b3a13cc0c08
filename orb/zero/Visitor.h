#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include <orb/zero/ModelElement.h>

namespace orb::zero {

/// Calls the function that is registered for the class of an element, or for the nearest of its
/// superclasses that has one.
template <class R>
class Visitor {
 public:
  using Function = std::function<R(const ModelElement&)>;

  virtual ~Visitor() = default;

  /// The result of the function; a default `R` for an empty handle and when no class up to the root
  /// has one. A function that holds no callable raises `std::bad_function_call`.
  R dispatch(const ModelElement& element) const {
    if (!element) return R();
    const std::size_t place = placeFor(*element.get());
    return place == functions_.size() ? R() : functions_[place].second(element);
  }

 protected:
  Visitor() = default;
  Visitor(const Visitor&) = delete;
  Visitor& operator=(const Visitor&) = delete;

  /// Registers a function for a class; the first one registered stays.
  void add(const uuid& id, Function function) {
    for (const auto& entry : functions_)
      if (entry.first == id) return;
    functions_.emplace_back(id, std::move(function));
    for (auto& place : places_) place.store(unknown, std::memory_order_relaxed);
  }

 private:
  static constexpr std::uint8_t unknown = UINT8_MAX;

  /// Of the function for the element; behind the last one when there is none.
  std::size_t placeFor(const ModelElement::Impl& element) const {
    const std::uint32_t number = element.classNumber();
    if (number >= places_.size()) return search(element.getMetaClass());
    std::size_t place = places_[number].load(std::memory_order_relaxed);
    if (place == unknown) {
      place = search(element.getMetaClass());
      if (place < unknown)
        places_[number].store(static_cast<std::uint8_t>(place), std::memory_order_relaxed);
    }
    return place;
  }
  std::size_t search(const meta::ClassInfo& from) const {
    for (const meta::ClassInfo* type = &from; type; type = type->superclass)
      for (std::size_t place = 0; place < functions_.size(); ++place)
        if (functions_[place].first == type->id) return place;
    return functions_.size();
  }

  std::vector<std::pair<uuid, Function>> functions_;
  // What was found for the first classes; the same for all threads that look.
  mutable std::array<std::atomic<std::uint8_t>, 64> places_{};
};

}  // namespace orb::zero
