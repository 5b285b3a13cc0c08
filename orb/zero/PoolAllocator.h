#pragma once

#include <cstddef>

#include <orb/zero/ModelElement.h>

namespace orb::zero {

/// Lets a container inside an element keep its nodes in the pool of the element's model.
template <class T>
class PoolAllocator {
 public:
  using value_type = T;

  explicit PoolAllocator(ModelElement::Impl& element) noexcept : element_(&element) {}
  template <class Other>
  PoolAllocator(const PoolAllocator<Other>& other) noexcept : element_(other.element_) {}

  T* allocate(std::size_t count) {
    return static_cast<T*>(element_->model().pool().allocate(count * sizeof(T)));
  }
  void deallocate(T* block, std::size_t count) noexcept {
    element_->model().pool().deallocate(block, count * sizeof(T));
  }
  friend bool operator==(const PoolAllocator&, const PoolAllocator&) noexcept = default;

 private:
  template <class>
  friend class PoolAllocator;

  ModelElement::Impl* element_;
};

}  // namespace orb::zero
