#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <orb/zero/Collection.h>
#include <orb/zero/Exception.h>

namespace orb::zero {

/// An ordered collection of items that are stored in place: values, or slots of elements that live
/// elsewhere. Places count from 0; a place that does not exist raises "InvalidValue".
template <class Item>
class Sequence : public Collection {
 public:
  using Collection::Collection;

  const Item& operator[](std::size_t place) const {
    checkPlace(place, size());
    return content_[place];
  }
  auto begin() const noexcept { return content_.begin(); }
  auto end() const noexcept { return content_.end(); }
  bool empty() const noexcept { return content_.empty(); }
  std::size_t size() const noexcept { return content_.size(); }
  void reserve(std::size_t size) { content_.reserve(size); }

  /// Takes out the item at this place; later ones move up.
  void erase(std::size_t place) {
    checkPlace(place, size());
    if (isRecorded()) {
      log([this, place, item = content_[place]]() mutable {
        content_.insert(iteratorAt(place), std::move(item));
      });
    }
    content_.erase(iteratorAt(place));
  }
  void clear() {
    while (!empty()) erase(size() - 1);
  }

 protected:
  ~Sequence() = default;

  void insertItem(std::size_t place, Item item) {
    checkPlace(place, size() + 1);
    if (size() == content_.capacity()) content_.reserve(std::max<std::size_t>(4, 2 * size()));
    if (isRecorded()) log([this, place] { content_.erase(iteratorAt(place)); });
    content_.insert(iteratorAt(place), std::move(item));
  }
  void setItem(std::size_t place, Item item) {
    checkPlace(place, size());
    if (content_[place] == item) return;
    if (isRecorded()) {
      log([this, place, before = content_[place]]() mutable {
        content_[place] = std::move(before);
      });
    }
    content_[place] = std::move(item);
  }
  std::vector<Item>& content() noexcept { return content_; }

 private:
  static void checkPlace(std::size_t place, std::size_t end) {
    if (place >= end) raise("InvalidValue");
  }
  auto iteratorAt(std::size_t place) noexcept {
    return content_.begin() + static_cast<std::ptrdiff_t>(place);
  }

  std::vector<Item> content_;
};

}  // namespace orb::zero
