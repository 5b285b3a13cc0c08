#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include <orb/zero/Api.h>
#include <orb/zero/Uuid.h>

namespace orb::zero {

class Storage;
namespace meta {
struct ClassInfo;
struct PropertyInfo;
}  // namespace meta

/// Handle of an element: one word that points to the element or is empty. Copying a handle adds a
/// reference, destroying it releases one. As long as a handle outside of the model refers to an
/// element, the element and its whole model stay.
///
/// The handle classes of a model derive from this one as their elements do, so a handle converts
/// to that of a base class; the way down is explicit and checked (`PowerSet{value}`).
///
/// A property slot inside an element is a handle too, told apart by bit 0 of its word: set for
/// life when the slot is made, kept by assignment, not taken over by a handle that is a copy. Slots
/// are counted apart from outside handles, since they must not keep the model.
class ORB_ZERO_API ModelElement {
 public:
  class Impl;
  class Builder;
  class Constrainables;

  ModelElement() noexcept = default;
  explicit ModelElement(Impl* element) noexcept;
  ModelElement(const ModelElement& other) noexcept : ModelElement(other.get()) {}
  ModelElement(ModelElement&& other) noexcept
      : word_(other.isSlot() ? 0 : std::exchange(other.word_, 0)) {
    if (other.isSlot()) [[unlikely]]
      assign(other.get());
  }
  ModelElement& operator=(const ModelElement& other) noexcept { return assignHandle(other.get()); }
  ModelElement& operator=(ModelElement&& other) noexcept {
    if ((word_ | other.word_) & slotTag) return assignHandle(other.get());  // not from a slot
    std::swap(word_, other.word_);
    return *this;
  }
  ~ModelElement();

  /// False for an empty handle and for a destroyed element; true again if a rollback revives it.
  explicit operator bool() const noexcept;
  /// The element's accessors. Raises "CannotCastIncompatibleTypes" with the handle's class when
  /// the handle is empty or the element destroyed.
  Impl* operator->() const;
  /// Handles are equal when they refer to the same element, or both to none.
  friend bool operator==(const ModelElement& a, const ModelElement& b) noexcept {
    return a.get() == b.get();
  }

  /// Counts a reference by hand, and gives it back.
  void addRef() const noexcept;
  void removeRef() const noexcept;

  /// The element, also a destroyed one; null for an empty handle.
  Impl* get() const noexcept { return reinterpret_cast<Impl*>(word_ & ~slotTag); }
  bool isSlot() const noexcept { return (word_ & slotTag) != 0; }

  static const meta::ClassInfo& metaClass() noexcept { return *record; }
  static const meta::ClassInfo* const record;
  static constexpr std::uint32_t classNumber = 0;  // of no elements
  /// The UUID of the class; an element's own is `getUuid()`.
  static uuid Uuid();

 protected:
  void becomeSlot() noexcept { word_ |= slotTag; }  // only while empty
  void forget() noexcept { word_ &= slotTag; }      // lets go without telling the element
  void exchange(ModelElement& other) noexcept { std::swap(word_, other.word_); }  // of two slots
  ModelElement& assign(Impl* target) noexcept;
  void assignSlot(Impl* target) noexcept;  // of a slot
  /// The same for a slot whose element does not know, as it is written by its address.
  ModelElement& assignHandle(Impl* target) noexcept;
  /// Raises the error of a handle that refers to no live element of its class.
  [[noreturn]] static void raiseEmpty(const meta::ClassInfo& expected);

 private:
  static constexpr std::uintptr_t slotTag = 1;
  std::uintptr_t word_ = 0;
};

/// Hash of handles by identity, for unordered containers.
struct ElementHash {
  std::size_t operator()(const ModelElement& element) const noexcept {
    return reinterpret_cast<std::uintptr_t>(element.get()) >> 4;
  }
};

}  // namespace orb::zero

#include <orb/zero/ModelElementImpl.h>
