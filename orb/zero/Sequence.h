#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include <orb/zero/Collection.h>
#include <orb/zero/Exception.h>
#include <orb/zero/PoolAllocator.h>

namespace orb::zero {

/// An ordered collection of items that are stored in place: values, or slots of elements that live
/// elsewhere. Places count from 0; a place that does not exist raises "InvalidValue".
template <class Item>
class Sequence : public Collection {
 public:
  /// One item may stand in several places, so that a property of it is not `Unique`.
  static constexpr bool isRepeatable = true;

  Sequence(ModelElement::Impl& element, Descriptor descriptor) noexcept
      : Collection(element, descriptor), content_(PoolAllocator<Item>(element)) {}

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
    this->owner().checkNoProxy();
    checkPlace(place, size());
    Unit unit(owner());
    if (isRecorded())
      log(Presence{*this, place, {}}).exchange(true);
    else
      content_.erase(iteratorAt(place));
    unit.commit();
  }
  void clear() {
    this->owner().checkNoProxy();
    eraseIf([](const Item&) { return true; });
  }

 protected:
  ~Sequence() = default;

  void insertItem(std::size_t place, Item item) {
    owner().checkNoProxy();
    checkPlace(place, size() + 1);
    if (size() == content_.capacity()) content_.reserve(std::max<std::size_t>(4, 2 * size()));
    Unit unit(owner());
    if (isRecorded()) log(Presence{*this, place, {}});
    content_.insert(iteratorAt(place), std::move(item));
    note(place);
    unit.commit();
  }
  void setItem(std::size_t place, Item item) {
    owner().checkNoProxy();
    checkPlace(place, size());
    if (content_[place] == item) return;
    Unit unit(owner());
    if (isRecorded()) {
      log(Replacement{*this, place, std::move(item)}).exchange(true);
    } else {
      content_[place] = std::move(item);
      note(place);
    }
    unit.commit();
  }
  /// Takes out many items at once.
  template <class Test>
  void eraseIf(Test test) {
    if (std::none_of(begin(), end(), test)) return;
    Unit unit(owner());
    Items left(content_.get_allocator());
    left.reserve(size());
    std::remove_copy_if(begin(), end(), std::back_inserter(left), test);
    perform(Content{*this, std::move(left)});
    unit.commit();
  }
  auto& content() noexcept { return content_; }
  const auto& content() const noexcept { return content_; }

 private:
  using Items = std::vector<Item, PoolAllocator<Item>>;  // near the element

  /// All items, in the place of all that were there.
  struct Content {
    void exchange(bool links) noexcept {
      sequence.content_.swap(other);
      for (std::size_t place = 0; links && place < sequence.size(); ++place) sequence.note(place);
    }
    Sequence& sequence;
    Items other;
  };
  /// An item that came or went. The vector never gives memory back, so that neither way needs any.
  struct Presence {
    void exchange(bool links) noexcept {
      const auto at = sequence.iteratorAt(place);
      if (item) {
        sequence.content_.insert(at, std::move(*item));
        item.reset();
        if (links) sequence.note(place);
      } else {
        item.emplace(std::move(*at));
        sequence.content_.erase(at);
      }
    }
    Sequence& sequence;
    std::size_t place;
    std::optional<Item> item;
  };
  /// An item in the place of another.
  struct Replacement {
    void exchange(bool links) noexcept {
      std::swap(sequence.content_[place], other);
      if (links) sequence.note(place);
    }
    Sequence& sequence;
    std::size_t place;
    Item other;
  };

  static void checkPlace(std::size_t place, std::size_t end) {
    if (place >= end) raise("InvalidValue");
  }
  /// An item that came may be a reference.
  void note(std::size_t place) const noexcept {
    if constexpr (std::derived_from<Item, ModelElement>)
      if (content_[place].get()) owner().noteReference(*content_[place].get());
  }
  auto iteratorAt(std::size_t place) noexcept {
    return content_.begin() + static_cast<std::ptrdiff_t>(place);
  }

  Items content_;
};

}  // namespace orb::zero
