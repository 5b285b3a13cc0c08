#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include <orb/zero/Hash.h>
#include <orb/zero/ValueTraits.h>

namespace orb::zero {

/// How a `Value` treats what it holds, given as the bytes in which it is stored. The records are
/// constant. As a rule a process has one of a type, but a library that hides the type has its own.
struct ValueType {
  std::string_view name;  ///< of one element, see `ValueTraits`
  Multiplicity multiplicity;
  void (*destroy)(std::byte* value) noexcept;                 ///< null: nothing to do
  void (*clone)(const std::byte* from, std::byte* to);        ///< null: copy the bytes
  void (*relocate)(std::byte* from, std::byte* to) noexcept;  ///< null: move the bytes
  bool (*equals)(const std::byte* a, const std::byte* b);
  std::uint64_t (*hash)(const std::byte* value);

  friend bool operator==(const ValueType& a, const ValueType& b) noexcept {
    return &a == &b || (a.name == b.name && a.multiplicity == b.multiplicity);
  }
};

/// One value of any type that has `ValueTraits`, a handle of any class, or an optional, a sequence
/// or a set of such. Small ones are stored in place. Handles are stored as those of `ModelElement`,
/// whatever their class, and narrowed by `getValue`.
class ORB_ZERO_API Value {
 public:
  /// An empty value, which is of no type.
  Value() noexcept = default;
  template <class T, class = std::enable_if_t<Valuable<std::remove_cvref_t<T>>>>
  Value(T&& value);
  /// A handle to the element.
  explicit Value(ModelElement::Impl* element) noexcept;
  Value(const Value& other) : type_(other.type_) {
    if (type_ && type_->clone)
      type_->clone(other.bytes_, bytes_);
    else
      std::memcpy(bytes_, other.bytes_, capacity);
  }
  Value(Value&& other) noexcept { take(other); }
  Value& operator=(Value other) noexcept {
    destroy();
    take(other);
    return *this;
  }
  ~Value() { destroy(); }

  bool isEmpty() const noexcept { return type_ == nullptr; }
  /// What is known of its type; null for an empty value.
  const ValueType* type() const noexcept { return type_; }

  /// What it holds, as a `T`: by reference, valid as long as this value, or, where `T` names
  /// handles, as new ones. Raises "CannotCastIncompatibleTypes" with the name of `T` when the value
  /// is empty, of another type, or an element of another class. An empty handle stays empty.
  template <Valuable T>
  decltype(auto) getValue() const&;
  /// The same of a value that is about to go: out of it.
  template <Valuable T>
  T getValue() &&;

  /// Equal when the types are and what they hold is; two empty values are equal.
  friend bool operator==(const Value& a, const Value& b) { return a.equals(b); }
  /// Equal values have one hash. A collection mixes those of its elements; what is empty has 0.
  std::uint64_t hash() const { return type_ ? type_->hash(bytes_) : 0; }

 private:
  static constexpr std::size_t capacity = 32;  // a std::string

  /// How an S is stored: in place, or behind a pointer.
  template <class S>
  struct ORB_ZERO_API Stored;

  void take(Value& other) noexcept {
    type_ = std::exchange(other.type_, nullptr);
    if (type_ && type_->relocate)
      type_->relocate(other.bytes_, bytes_);
    else
      std::memcpy(bytes_, other.bytes_, capacity);
  }
  void destroy() noexcept;
  bool equals(const Value& other) const {
    if (!type_ || !other.type_) return type_ == other.type_;
    return *type_ == *other.type_ && type_->equals(bytes_, other.bytes_);
  }
  [[noreturn]] static void raiseNo(std::string_view expected);
  template <class T>
  void checkCompatible() const {
    constexpr const ValueType& expected = Stored<StoredAs<T>>::type;
    if (type_ != &expected && !(type_ && *type_ == expected)) [[unlikely]]
      raiseNo(valueName<T>());
  }

  const ValueType* type_ = nullptr;
  alignas(void*) std::byte bytes_[capacity];
};

template <class S>
struct ORB_ZERO_API Value::Stored {
  // NOLINTNEXTLINE(bugprone-sizeof-expression): an S may be a pointer.
  static constexpr bool isInPlace = sizeof(S) <= capacity && alignof(S) <= alignof(void*) &&
                                    std::is_nothrow_move_constructible_v<S>;
  static constexpr bool isBytes = isInPlace && std::is_trivially_copyable_v<S>;

  static const S& get(const std::byte* bytes) noexcept {
    if constexpr (isInPlace)
      return *std::launder(reinterpret_cast<const S*>(bytes));
    else
      return **std::launder(reinterpret_cast<const S* const*>(bytes));
  }
  template <class... Given>
  static void put(std::byte* bytes, Given&&... given) {
    if constexpr (isInPlace)
      new (bytes) S(std::forward<Given>(given)...);
    else
      new (bytes) const S*(new S(std::forward<Given>(given)...));
  }

  static void destroy(std::byte* bytes) noexcept {
    if constexpr (isInPlace)
      get(bytes).~S();
    else
      delete &get(bytes);
  }
  static void clone(const std::byte* from, std::byte* to) { put(to, get(from)); }
  static void relocate(std::byte* from, std::byte* to) noexcept {
    put(to, std::move(const_cast<S&>(get(from))));
    destroy(from);
  }
  static bool equals(const std::byte* a, const std::byte* b) { return get(a) == get(b); }
  static std::uint64_t hash(const std::byte* bytes) {
    constexpr Multiplicity multiplicity = ValueForm<S>::multiplicity;
    using Traits = ValueTraits<ValueElement<S>>;
    const S& held = get(bytes);
    if constexpr (multiplicity == Multiplicity::One) {
      return Traits::hash(held);
    } else if constexpr (multiplicity == Multiplicity::Optional) {
      return held ? Traits::hash(*held) : 0;
    } else {
      std::uint64_t mixed = 0;
      for (const auto& element : held) mixed = hashCombine(mixed, Traits::hash(element));
      return mixed;
    }
  }

  static constexpr ValueType type{ValueTraits<ValueElement<S>>::name(), ValueForm<S>::multiplicity,
                                  isBytes ? nullptr : &destroy, isBytes ? nullptr : &clone,
                                  // A handle may move as bytes, as may the pointer to a big value.
                                  isInPlace && !isBytes && !ElementHandle<S> ? &relocate : nullptr,
                                  &equals, &hash};
};

inline void Value::destroy() noexcept {
  if (type_ == &Stored<ModelElement>::type)
    Stored<ModelElement>::destroy(bytes_);  // the most frequent one needs no call
  else if (type_ && type_->destroy)
    type_->destroy(bytes_);
}

template <class T, class>
Value::Value(T&& value) {
  using Given = std::remove_cvref_t<T>;
  using Held = StoredAs<Given>;
  if constexpr (ElementHandle<ValueElement<Given>> &&
                ValueForm<Given>::multiplicity == Multiplicity::Sequence)
    Stored<Held>::put(bytes_, value.begin(), value.end());
  else
    Stored<Held>::put(bytes_, std::forward<T>(value));
  type_ = &Stored<Held>::type;
}

inline Value::Value(ModelElement::Impl* element) noexcept : type_(&Stored<ModelElement>::type) {
  Stored<ModelElement>::put(bytes_, element);
}

template <Valuable T>
decltype(auto) Value::getValue() const& {
  using Held = StoredAs<T>;
  checkCompatible<T>();
  const Held& held = Stored<Held>::get(bytes_);
  using H = ValueElement<T>;
  if constexpr (!ElementHandle<H>) {
    return held;
  } else if constexpr (ValueForm<T>::multiplicity == Multiplicity::One) {
    return T(held);
  } else if constexpr (ValueForm<T>::multiplicity == Multiplicity::Optional) {
    return held ? T(H(*held)) : T();
  } else {
    return T(held.begin(), held.end());
  }
}

template <Valuable T>
T Value::getValue() && {
  using Held = StoredAs<T>;
  if constexpr (std::is_same_v<Held, T> || ElementHandle<T>) {
    checkCompatible<T>();
    return T(std::move(const_cast<Held&>(Stored<Held>::get(bytes_))));
  } else {
    return std::as_const(*this).getValue<T>();
  }
}

inline Value ModelElement::Impl::getPropertyValue(const meta::PropertyInfo& property,
                                                  ProxyTag tag) const {
  checkOwn(property);
  return property.services.get(*this, tag);
}
inline Value ModelElement::Impl::getPropertyValue(std::string_view name, ProxyTag tag) const {
  const meta::PropertyInfo* const property = getPropertyByName(name);
  if (!property) [[unlikely]]
    raiseNotOwn(name);
  return property->services.get(*this, tag);
}

}  // namespace orb::zero
