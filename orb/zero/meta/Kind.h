#pragma once

#include <orb/zero/ElementMap.h>
#include <orb/zero/OwnedSequence.h>
#include <orb/zero/PrimitiveSequence.h>
#include <orb/zero/ReferenceSequence.h>
#include <orb/zero/Slot.h>

/// What differs between the kinds of property. A new kind is one more specialisation of `Kind`:
///   value                              how many values, and whether they are owned
///   type()                             class of the values, absent for primitive ones
///   Primitive                          type of the values, absent for elements
///   Old                                what an undo record keeps, absent for collections, which
///                                      log every change by themselves
///   targets, add, release, clear, forget   see `PropertyServices`; absent where there is nothing
namespace orb::zero::meta {

/// A single primitive value. Whether it was ever given is a bit of the element.
template <class Member>
struct Kind {
  using Primitive = Member;
  using Old = Member;
  static constexpr ValueKind value = ValueKind::Single;
  static constexpr bool isOwning = false;
};

/// A single reference.
template <class H>
struct Kind<Slot<H>> {
  using Old = Slot<H>;
  static constexpr ValueKind value = ValueKind::Single;
  static constexpr bool isOwning = false;

  static const ClassInfo& type() { return H::metaClass(); }
  static void targets(const Slot<H>& slot, TargetVisitor& visitor) {
    if (slot.get()) visitor.visit(*slot.get());
  }
  static void release(Slot<H>& slot, Element& owner, int position, Element& target) {
    if (slot.get() != &target) return;
    owner.notifyModifying(position);
    slot.clear();
  }
  static void clear(Slot<H>& slot) noexcept { slot.clear(); }
  static void forget(Slot<H>& slot) noexcept { slot.forget(); }
};

/// A collection of elements, which has these services itself.
template <class Collection, ValueKind kind, bool owning>
struct CollectionKind {
  static constexpr ValueKind value = kind;
  static constexpr bool isOwning = owning;

  static const ClassInfo& type() { return Collection::Entry::metaClass(); }
  static void targets(const Collection& collection, TargetVisitor& visitor) {
    collection.targets(visitor);
  }
  static void add(Collection& collection, const ModelElement& element) { collection.add(element); }
  static void release(Collection& collection, Element&, int, Element& target) {
    collection.release(target);
  }
  static void clear(Collection& collection) noexcept { collection.reset(); }
  static void forget(Collection& collection) noexcept { collection.forget(); }
};
template <class K, class E>
struct Kind<ElementMap<K, E>> : CollectionKind<ElementMap<K, E>, ValueKind::Keyed, true> {};
template <class E>
struct Kind<OwnedSequence<E>> : CollectionKind<OwnedSequence<E>, ValueKind::Collection, true> {};
template <class E>
struct Kind<ReferenceSequence<E>>
    : CollectionKind<ReferenceSequence<E>, ValueKind::Collection, false> {};

template <class T>
struct Kind<PrimitiveSequence<T>> {
  using Primitive = T;
  static constexpr ValueKind value = ValueKind::Collection;
  static constexpr bool isOwning = false;
};

}  // namespace orb::zero::meta
