#pragma once

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include <tyve/Name.h>

namespace tyve {

/// Items in the order of their arrival, found by their names. They stay at their addresses.
template <class T>
class NameTable {
 public:
  /// Adds the item, unless there is one of this name. What has the name now, and whether it is new.
  std::pair<T*, bool> add(Name name, std::unique_ptr<T> item) {
    const auto [place, isNew] = index_.try_emplace(name, item.get());
    if (isNew) {
      try {
        items_.push_back(std::move(item));
      } catch (...) {
        index_.erase(place);
        throw;
      }
    }
    return {place->second, isNew};
  }
  /// Null when there is none.
  T* find(Name name) const noexcept {
    const auto found = index_.find(name);
    return found == index_.end() ? nullptr : found->second;
  }
  const std::vector<std::unique_ptr<T>>& items() const noexcept { return items_; }

 private:
  std::vector<std::unique_ptr<T>> items_;
  std::unordered_map<Name, T*> index_;
};

}  // namespace tyve
