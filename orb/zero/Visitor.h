#pragma once

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
    for (const meta::ClassInfo* type = &element.get()->getMetaClass(); type;
         type = type->superclass)
      for (const auto& [id, function] : functions_)
        if (id == type->id) return function(element);
    return R();
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
  }

 private:
  std::vector<std::pair<uuid, Function>> functions_;  // a dozen at most: a scan beats hashing
};

}  // namespace orb::zero
