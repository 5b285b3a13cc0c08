#pragma once

#include <orb/zero/Sequence.h>

namespace orb::zero {

/// An ordered collection of primitive values; equal ones may repeat.
template <class T>
class PrimitiveSequence : public Sequence<T> {
 public:
  using Sequence<T>::Sequence;

  void add(T value) { this->insertItem(this->size(), std::move(value)); }
  void insert(std::size_t place, T value) { this->insertItem(place, std::move(value)); }
  void set(std::size_t place, T value) { this->setItem(place, std::move(value)); }
};

}  // namespace orb::zero
