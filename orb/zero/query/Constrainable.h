#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <orb/zero/Exception.h>
#include <orb/zero/PrimitiveSequence.h>
#include <orb/zero/meta/ClassInfo.h>
#include <orb/zero/query/Constraint.h>

/// What a query may ask of a property: one class per kind of property. An object of these is an
/// accessor of a `Constrainables`, or is made from a descriptor that is known at run time only;
/// a descriptor of another kind, or of values of another type, raises "CannotCastIncompatibleTypes"
/// with the name of the property.
namespace orb::zero::query {

/// Any property.
class ORB_ZERO_API Constrainable {
 public:
  explicit Constrainable(const meta::PropertyInfo& property) noexcept : property_(&property) {}

  const meta::PropertyInfo& property() const noexcept { return *property_; }
  /// A single value was given, a reference names an element, a collection is not empty.
  Constraint isPresent() const;

 protected:
  /// `primitive` is the type of the values, null for elements.
  Constrainable(const meta::PropertyInfo& property, bool isSingle, const std::type_info* primitive);

  /// What fulfils `test(element, slot)`.
  template <class Test>
  Constraint where(Test test) const;

 private:
  const meta::PropertyInfo* property_;
};

/// A single primitive value. One that was never given equals nothing and stands in no order.
template <class T>
class Primitive : public Constrainable {
 public:
  Primitive(const meta::PropertyInfo& property) : Constrainable(property, true, &typeid(T)) {}

  /// Numbers and texts have an order; texts compare byte by byte.
  static constexpr bool isOrdered = std::is_arithmetic_v<T> || std::is_same_v<T, std::string>;

  Constraint operator==(T value) const { return related<std::equal_to<>>(std::move(value)); }
  /// True also of a value that was never given.
  Constraint operator!=(T value) const { return !(*this == std::move(value)); }
  Constraint operator<(T value) const requires isOrdered {
    return related<std::less<>>(std::move(value));
  }
  Constraint operator<=(T value) const requires isOrdered {
    return related<std::less_equal<>>(std::move(value));
  }
  Constraint operator>(T value) const requires isOrdered {
    return related<std::greater<>>(std::move(value));
  }
  Constraint operator>=(T value) const requires isOrdered {
    return related<std::greater_equal<>>(std::move(value));
  }

 private:
  template <class Relation>
  Constraint related(T value) const {
    return where([position = property().position, value = std::move(value)](
                     const meta::Element& element, const void* slot) {
      return element.isGiven(position) && Relation()(*static_cast<const T*>(slot), value);
    });
  }
};

/// A single reference.
class ORB_ZERO_API Reference : public Constrainable {
 public:
  Reference(const meta::PropertyInfo& property) : Constrainable(property, true, nullptr) {}

  /// Names this very element; with an empty handle or a destroyed element, names none.
  Constraint operator==(const ModelElement& target) const;
  Constraint operator!=(const ModelElement& target) const { return !(*this == target); }
};

/// Several elements, owned or referred to.
class ORB_ZERO_API ElementCollection : public Constrainable {
 public:
  ElementCollection(const meta::PropertyInfo& property) : Constrainable(property, false, nullptr) {}

  /// Nothing contains an empty handle or a destroyed element.
  Constraint contains(const ModelElement& element) const;
};

/// Several primitive values.
template <class T>
class PrimitiveCollection : public Constrainable {
 public:
  PrimitiveCollection(const meta::PropertyInfo& property)
      : Constrainable(property, false, &typeid(T)) {}

  Constraint contains(T value) const {
    return where([value = std::move(value)](const meta::Element&, const void* slot) {
      const auto& values = *static_cast<const PrimitiveSequence<T>*>(slot);
      return std::find(values.begin(), values.end(), value) != values.end();
    });
  }
};

/// A test of one property.
template <class Test>
class PropertyTest final : public Constraint::Node {
 public:
  PropertyTest(const meta::PropertyInfo& property, Test test)
      : property_(property), test_(std::move(test)) {}

  void select(Constraint::Elements& elements) const override {
    if (elements.empty()) return;
    const auto keep = [&](auto slotOf) {
      std::erase_if(elements, [&](const meta::Element* element) {
        return !test_(*element, slotOf(*element));
      });
    };
    const meta::Element& first = *elements.front();
    const auto addressOf = [](const void* object) { return static_cast<const std::byte*>(object); };
    const auto offset =
        static_cast<std::size_t>(addressOf(property_.services.slot(first)) - addressOf(&first));
    if (offset < first.getMetaClass().size)  // then it is as far from the start of any other one
      keep([=](const meta::Element& element) { return addressOf(&element) + offset; });
    else
      keep(property_.services.slot);
  }
  void check(const meta::ClassInfo& type) const override {
    if (!type.has(property_)) raise("InvalidValue", {property_.getQualifiedName()});
  }

 private:
  const meta::PropertyInfo& property_;
  Test test_;
};

template <class Test>
Constraint Constrainable::where(Test test) const {
  return Constraint(std::make_shared<PropertyTest<Test>>(*property_, std::move(test)));
}

}  // namespace orb::zero::query
