#pragma once

#include <vector>

#include <orb/zero/ElementMap.h>
#include <orb/zero/OwnedSequence.h>
#include <orb/zero/PrimitiveSequence.h>
#include <orb/zero/ReferenceSequence.h>
#include <orb/zero/Slot.h>
#include <orb/zero/Value.h>

/// What differs between the kinds of property. A new kind is one more specialisation of `Kind`:
///   value                              how many values, and whether they are owned
///   type()                             class of the values, absent for primitive ones
///   Primitive                          type of the values, absent for elements
///   Old                                what an undo record keeps, absent for collections, which
///                                      log every change by themselves
///   get, assign, insert, snapshot      reads and changes a collection, and what of it is compared
///   at, find, keys, rekey              reads one entry of it by its place or key, moves it
///   note                               see `ClassInfo`
///   targets, add, link, release, replace, clear, forget
///                                      see `PropertyServices`; absent where there is nothing
namespace orb::zero::meta {

/// A single primitive value. Whether it was ever given is a bit of the element.
template <class Member>
struct Kind {
  using Primitive = Member;
  using Old = Member;
  static constexpr ValueKind value = ValueKind::Single;
  static constexpr bool isOwning = false;

  static Value get(const Member& value, ProxyTag) { return value; }
};

/// A single reference.
template <class H>
struct Kind<Slot<H>> {
  using Handle = H;
  using Old = Slot<H>;
  static constexpr ValueKind value = ValueKind::Single;
  static constexpr bool isOwning = false;

  static const ClassInfo& type() { return H::metaClass(); }
  static Value get(const Slot<H>& slot, ProxyTag tag) {
    if (tag == ProxyTag::Resolve && slot.get() && slot.get()->isProxy()) [[unlikely]]
      return slot.get()->resolved();
    return Value(slot.get());
  }
  static void targets(const Slot<H>& slot, TargetVisitor& visitor) {
    if (slot.get()) visitor.visit(*slot.get());
  }
  static void release(Slot<H>& slot, Element& owner, int position, Element& target) {
    if (slot.get() != &target) return;
    owner.notifyModifying(position);
    slot.clear();
  }
  static void replace(Slot<H>& slot, Element& owner, int position, Element& target,
                      Element& other) {
    if (slot.get() != &target) return;
    owner.notifyModifying(position);
    slot = H(ModelElement(&other));
    owner.noteReference(other);
  }
  static void note(const Slot<H>& slot, const Element& owner, Referrers& referrers) noexcept {
    if (slot.get()) referrers.note(*slot.get(), owner.place());
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
  static void link(Collection& collection, bool links) noexcept { collection.link(links); }
  static void release(Collection& collection, Element&, int, Element& target) {
    collection.release(target);
  }
  static void replace(Collection& collection, Element&, int, Element& target, Element& other) {
    collection.replace(target, other);
  }
  static Value get(const Collection& collection, ProxyTag tag) {
    std::vector<ModelElement> elements;
    elements.reserve(collection.size());
    collection.forEach([&](const ModelElement& element) {
      elements.push_back(tag == ProxyTag::Resolve ? resolved(element) : element);
    });
    return elements;
  }
  static ModelElement resolved(const ModelElement& element) {
    return element ? element->resolved() : element;
  }
  static Value at(const Collection& collection, std::size_t place,
                  ProxyTag tag) requires(kind == ValueKind::Collection) {
    return tag == ProxyTag::Resolve ? resolved(collection[place]) : ModelElement(collection[place]);
  }
  static void assign(Collection& collection, const Value& value) {
    using Elements = std::vector<typename Collection::Entry>;
    const Elements elements = value.isEmpty() ? Elements() : value.getValue<Elements>();
    collection.checkAll(elements);  // what is staged cannot be taken back
    collection.clear();
    for (const ModelElement& element : elements) collection.add(element);
  }
  static void insert(Collection& collection, const Value& value) {
    collection.add(value.getValue<typename Collection::Entry>());
  }
  static auto snapshot(const Collection& collection) { return collection.snapshot(); }
  static void clear(Collection& collection) noexcept { collection.reset(); }
  static void forget(Collection& collection) noexcept { collection.forget(); }
};
template <class K, class E>
struct Kind<ElementMap<K, E>> : CollectionKind<ElementMap<K, E>, ValueKind::Keyed, true> {
  static Value find(const ElementMap<K, E>& map, const Value& key) {
    return Kind::resolved(map[key.getValue<K>()]);
  }
  static Value keys(const ElementMap<K, E>& map) {
    std::vector<K> keys;
    keys.reserve(map.size());
    for (const auto& [key, child] : map) keys.push_back(key);
    return keys;
  }
  static void rekey(ElementMap<K, E>& map, Element& child, const void* key) {
    map.rekey(child, *static_cast<const K*>(key));
  }
};
template <class E>
struct Kind<OwnedSequence<E>> : CollectionKind<OwnedSequence<E>, ValueKind::Collection, true> {};
template <class E>
struct Kind<ReferenceSequence<E>>
    : CollectionKind<ReferenceSequence<E>, ValueKind::Collection, false> {
  static void note(const ReferenceSequence<E>& sequence, const Element& owner,
                   Referrers& referrers) noexcept {
    for (const E& entry : sequence)
      if (entry.get()) referrers.note(*entry.get(), owner.place());
  }
};

template <class T>
struct Kind<PrimitiveSequence<T>> {
  using Primitive = T;
  static constexpr ValueKind value = ValueKind::Collection;
  static constexpr bool isOwning = false;

  static Value get(const PrimitiveSequence<T>& sequence, ProxyTag) { return snapshot(sequence); }
  static Value at(const PrimitiveSequence<T>& sequence, std::size_t place, ProxyTag) {
    return T(sequence[place]);
  }
  static void assign(PrimitiveSequence<T>& sequence, const Value& value) {
    const auto items = value.isEmpty() ? std::vector<T>() : value.getValue<std::vector<T>>();
    sequence.clear();
    for (const T& item : items) sequence.add(item);
  }
  static void insert(PrimitiveSequence<T>& sequence, const Value& value) {
    sequence.add(value.getValue<T>());
  }
  static std::vector<T> snapshot(const PrimitiveSequence<T>& sequence) {
    return std::vector<T>(sequence.begin(), sequence.end());
  }
};

}  // namespace orb::zero::meta
