#pragma once

#include <orb/zero/Builder.h>
#include <orb/zero/Exception.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/query/Constrainables.h>

namespace orb::zero {

/// Adds to the handle of a base class what is the same for every class X. X declares its `Impl` and
/// one static descriptor per property.
///
/// `->` reaches the accessors of a property p: `getP`, `hasP` and `setP` of a single one; of one of
/// several `hasP` and `getP`, which gives the collection (`ReferenceSequence`, `OwnedSequence`,
/// `PrimitiveSequence` or `ElementMap`) to be read and changed.
template <class X, class Base>
class ORB_ZERO_API Handle : public Base {
 public:
  using Super = Base;
  class Builder;
  class Constrainables;

  /// An empty handle.
  Handle() = default;
  /// The checked down-cast: an empty handle stays empty; an element of another class raises
  /// "CannotCastIncompatibleTypes" with the name of X.
  explicit Handle(const ModelElement& element) {
    checkClass(element);
    this->assign(element.get());
  }
  explicit Handle(ModelElement&& element) {
    checkClass(element);
    static_cast<ModelElement&>(*this) = std::move(element);
  }

  /// The element's accessors; see `ModelElement::operator->`.
  auto* operator->() const {
    if (!*this) [[unlikely]]
      ModelElement::raiseEmpty(metaClass());
    return static_cast<typename X::Impl*>(this->get());
  }

  /// What is known of the class at run time.
  static const meta::ClassInfo& metaClass() noexcept { return *record; }
  static const meta::ClassInfo* const record;  // defined by meta/Emit.h, as is the next
  static const std::uint32_t classNumber;      // see `meta::classAt`
  /// The UUID of the class.
  static uuid Uuid() { return metaClass().id; }
  /// Makes an empty element. Raises "UniquenessConstraint" when a live element of the model has
  /// the UUID, and "InvalidValue" when X is abstract.
  static X create(const Model& model, const uuid& id) { return of(model->create(metaClass(), id)); }
  /// The stand-in for an X that is not there (see `Model::createProxy`).
  static X createProxy(const Model& model, const uuid& id) {
    return X(model.createProxy(metaClass(), id));
  }
  /// What `X(element)->` reaches, with the same errors, for as long as something else holds it.
  static auto& implOf(const ModelElement& element) {
    if (!element || !element.get()->isOf(classNumber, metaClass())) [[unlikely]]
      ModelElement::raiseEmpty(metaClass());
    return static_cast<typename X::Impl&>(*element.get());
  }
  /// The Impl of a live element of X itself; null for any other, proxies and those of a derived
  /// class included.
  static auto* exactImplOf(const ModelElement& element) noexcept {
    ModelElement::Impl* const impl = element.get();
    const bool isExact = impl && impl->isMemberOfExactly(classNumber);
    return isExact ? static_cast<typename X::Impl*>(impl) : nullptr;
  }

 protected:
  /// A handle of an element that is known to be an X.
  static X of(ModelElement element) noexcept {
    X handle;
    static_cast<ModelElement&>(handle) = std::move(element);
    return handle;
  }
  /// The descriptor of the property at this position.
  static const meta::PropertyInfo& property(std::size_t position) {
    return *metaClass().all[position - 1];
  }

 private:
  template <class>
  friend class ImplOf;
  static void checkClass(const ModelElement& element) {
    if (element.get() && !element.get()->isOf(classNumber, metaClass())) [[unlikely]]
      ModelElement::raiseEmpty(metaClass());
  }
};

/// Makes one element of class X. `->` reaches the setters of the element to be, which take effect
/// as they do on an element of the model; what is set becomes part of the model by `create`.
template <class X, class Base>
class Handle<X, Base>::Builder : public ModelElement::Builder {
 public:
  explicit Builder(const Model& model) : ModelElement::Builder(model, metaClass()) {}

  auto* operator->() const { return static_cast<typename X::Impl*>(this->staged()); }
  /// Makes the element, with a new UUID or a given one (see `ModelElement::Builder`).
  X create() { return Handle::of(ModelElement::Builder::create()); }
  X create(const uuid& id) { return Handle::of(ModelElement::Builder::create(id)); }
};

/// What a query may ask of elements of class X. A class with properties of its own derives its
/// `Constrainables` from this one, and adds an accessor for each.
template <class X, class Base>
class Handle<X, Base>::Constrainables : public Base::Constrainables {
 public:
  /// Has the query search the class. Raises "InvalidValue" when this is not X or derived from it,
  /// or leads out of what the query searches (see `AbstractQuery::narrow`).
  Constrainables(query::AbstractQuery& query, const meta::ClassInfo& type,
                 query::SearchClassMatchMode mode)
      : Base::Constrainables(query, Constrainables::checked(type, metaClass()), mode) {}
};

}  // namespace orb::zero
