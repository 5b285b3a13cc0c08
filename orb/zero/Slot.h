#pragma once

#include <orb/zero/ModelElement.h>

namespace orb::zero {

/// A handle inside an element. It is a real `H`, so its address can be handed out as an `H*`, and
/// a write through that pointer keeps it a slot.
template <class H>
class Slot : public H {
 public:
  Slot() noexcept { this->becomeSlot(); }
  explicit Slot(ModelElement::Impl* target) noexcept : Slot() { this->assignSlot(target); }
  Slot(const Slot& other) noexcept : Slot(other.get()) {}
  Slot(Slot&& other) noexcept : Slot() { this->exchange(other); }
  Slot& operator=(const Slot& other) noexcept { return this->assignSlot(other.get()), *this; }
  Slot& operator=(Slot&& other) noexcept { return this->exchange(other), *this; }
  Slot& operator=(const H& other) noexcept { return this->assignSlot(other.get()), *this; }
  ~Slot() = default;

  void clear() noexcept { this->assignSlot(nullptr); }
  using H::assignSlot;
  using H::forget;
};

}  // namespace orb::zero
