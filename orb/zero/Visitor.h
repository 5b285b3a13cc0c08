#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include <orb/zero/ModelElement.h>
#include <orb/zero/meta/ClassList.h>

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
    return hasFunction(place) ? functions_[place].second(element) : R();
  }

 protected:
  Visitor() { places_.fill(unknown); }
  Visitor(const Visitor&) = delete;
  Visitor& operator=(const Visitor&) = delete;

  /// Registers a function for a class; the first one registered stays.
  void add(const uuid& id, Function function) {
    for (const auto& entry : functions_)
      if (entry.first == id) return;
    functions_.emplace_back(id, std::move(function));
    places_.fill(unknown);
  }
  /// Registers `visitor.visit(X)` for each of the classes, in this order.
  template <class V, class... X>
  void addVisits(V& visitor, meta::ClassList<X...>) {
    functions_.reserve(functions_.size() + sizeof...(X));
    (add(X::Uuid(), [&visitor](const ModelElement& element) { return visitor.visit(X{element}); }),
     ...);
  }

  /// The place, in the order of registration, of the function for the element; behind the last one
  /// when there is none.
  std::size_t placeFor(const ModelElement::Impl& element) const {
    const std::uint32_t number = element.classNumber();
    if (number >= places_.size()) return search(element.getMetaClass());
    const std::atomic_ref known(places_[number]);
    std::size_t place = known.load(std::memory_order_relaxed);
    if (place == unknown) [[unlikely]] {
      place = search(element.getMetaClass());
      if (place < unknown) known.store(static_cast<std::uint8_t>(place), std::memory_order_relaxed);
    }
    return place;
  }
  /// Whether there is a function at a place that `placeFor` has found.
  bool hasFunction(std::size_t place) const noexcept { return place < functions_.size(); }
  /// Calls `visit(X::Impl&)` for the class at a place that `placeFor` has found; false for a place
  /// behind the list.
  template <class Visit, class... X>
  static bool visitAt(std::size_t place, ModelElement::Impl& element, meta::ClassList<X...>,
                      Visit visit) {
    std::size_t at = 0;
    return ((place == at++ && (visit(static_cast<typename X::Impl&>(element)), true)) || ...);
  }

 private:
  static constexpr std::uint8_t unknown = UINT8_MAX;

  std::size_t search(const meta::ClassInfo& from) const {
    for (const meta::ClassInfo* type = &from; type; type = type->superclass)
      for (std::size_t place = 0; place < functions_.size(); ++place)
        if (functions_[place].first == type->id) return place;
    return functions_.size();
  }

  std::vector<std::pair<uuid, Function>> functions_;
  // What was found for the first classes; the same for all threads that look.
  mutable std::array<std::uint8_t, 64> places_;
};

}  // namespace orb::zero
