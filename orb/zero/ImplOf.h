#pragma once

#include <concepts>
#include <type_traits>
#include <utility>

#include <orb/zero/ElementMap.h>
#include <orb/zero/Handle.h>
#include <orb/zero/OwnedSequence.h>
#include <orb/zero/PrimitiveSequence.h>
#include <orb/zero/ReferenceSequence.h>
#include <orb/zero/Slot.h>
#include <orb/zero/meta/Table.h>

namespace orb::zero {

namespace meta {
template <class X>
struct StorageOf;
}

/// Base of `X::Impl`: what every element class does alike, on top of the Impl of its superclass.
/// `X::Impl` adds its slots, a static constexpr `table`, and one line per accessor.
template <class X>
class ImplOf : public X::Super::Impl {
 public:
  /// A handle to this element.
  X This() const { return X(ModelElement(const_cast<ImplOf*>(this))); }

  /// Makes an element in one go: `fill` gives it its values while it is not part of the model yet.
  template <class Fill>
  static X make(Model::Impl& model, Fill fill) {
    using Impl = typename X::Impl;
    static_assert(std::is_nothrow_default_constructible_v<Impl>);
    Impl* const made = new (model.pool().allocate(sizeof(Impl))) Impl;
    Model::Impl::Staged staged = model.stage(*made);
    fill(*made);
    made->identify();
    return X::of(model.adopt(std::move(staged), X::metaClass()));
  }

  using Storage = meta::StorageOf<X>;
  using BuilderImpl = typename Handle<X, typename X::Super>::Builder;

  // What the accessors of a property are made of.

  /// Whether the single property is there: a reference to a live element, or a value once given.
  template <auto Member>
  bool has() const {
    const auto& slot = static_cast<const typename X::Impl&>(*this).*Member;
    if constexpr (std::derived_from<std::remove_cvref_t<decltype(slot)>, ModelElement>)
      return static_cast<bool>(slot);
    else
      return this->isGiven(meta::positionOf(Member));
  }
  /// Stores a value unchecked and unrecorded.
  template <auto Member, class Given>
  void basicSet(Given&& value) {
    auto& slot = static_cast<typename X::Impl&>(*this).*Member;
    slot = std::forward<Given>(value);
    if constexpr (!std::derived_from<std::remove_cvref_t<decltype(slot)>, ModelElement>)
      this->setGiven(meta::positionOf(Member), true);
    else if (slot.get())
      this->noteReference(*slot.get());
  }
  /// The guarded setter. Setting what is set already has no effect; a destroyed element is as good
  /// as none; one of another model raises "CannotCreateCrossModelAssociation", a proxy as the
  /// receiver "CannotModifyProxy", and a key that its owner has already "UniquenessConstraint".
  template <auto Member, class Given>
  void set(Given&& value) {
    this->checkNoProxy();
    auto& slot = static_cast<typename X::Impl&>(*this).*Member;
    if constexpr (std::derived_from<std::remove_cvref_t<Given>, ModelElement>) {
      ModelElement::Impl* const target = value ? value.get() : nullptr;
      if (slot.get() == target) return;
      this->checkCompatibleModel(target);
      Unit unit(*this);
      this->notifyModifying(meta::positionOf(Member));
      slot.assignSlot(target);
      if (target) this->noteReference(*target);
      unit.commit();
    } else {
      if (has<Member>() && slot == value) return;
      std::remove_cvref_t<decltype(slot)> copy(std::forward<Given>(value));
      Unit unit(*this);
      this->notifyModifying(meta::positionOf(Member));
      followKey<Member>(copy);
      basicSet<Member>(std::move(copy));
      unit.commit();
    }
  }
  /// Takes a primitive value back to what it is before it is given.
  template <auto Member>
  void unset() {
    if (!has<Member>()) return;
    Unit unit(*this);
    this->notifyModifying(meta::positionOf(Member));
    auto& slot = static_cast<typename X::Impl&>(*this).*Member;
    std::remove_cvref_t<decltype(slot)> none{};
    followKey<Member>(none);
    slot = std::move(none);
    this->setGiven(meta::positionOf(Member), false);
    unit.commit();
  }

 protected:
  ImplOf() noexcept { this->setClassNumber(X::classNumber); }

  using enum meta::Flag;  // for the table
  using enum meta::Body;

 private:
  /// A keyed owner stores the element under the key that it is about to get.
  template <auto Member, class Key>
  void followKey(const Key& key) {
    if constexpr (requires { requires std::same_as<decltype(X::Impl::keyOf(*this)), const Key&>; })
      this->rekey(meta::positionOf(Member), &key);
  }
};

}  // namespace orb::zero
