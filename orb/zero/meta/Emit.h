#pragma once

#include <algorithm>
#include <array>
#include <new>
#include <tuple>
#include <type_traits>
#include <utility>

#include <orb/zero/Handle.h>
#include <orb/zero/Storage.h>
#include <orb/zero/ValueTraits.h>
#include <orb/zero/meta/ClassList.h>
#include <orb/zero/meta/EmitOperations.h>
#include <orb/zero/meta/Kind.h>
#include <orb/zero/meta/Table.h>

/// Turns the table of a class X into its `ClassInfo`, `classOf<X>`, and defines `X::metaClass()`.
/// Included by the one source file that lists the classes of a model.
namespace orb::zero::meta {

/// The slot itself; of one that keeps its value in other forms as well, the value as its type.
template <class Slot>
auto& stored(Slot& slot) {
  if constexpr (requires { slot.stored(); })
    return slot.stored();
  else
    return slot;
}
template <class M>
using StoredOf = std::remove_reference_t<decltype(stored(std::declval<M&>()))>;

struct Nothing {};
template <class M>
struct OldOf {
  using Type = Nothing;
};
template <class M>
requires requires { typename Kind<M>::Old; }
struct OldOf<M> {
  using Type = typename Kind<M>::Old;
};
template <class... C, class... M>
auto oldValues(const std::tuple<Row<C, M>...>&) -> std::tuple<typename OldOf<StoredOf<M>>::Type...>;

/// The undo record of X: one typed slot per own property, on top of those of its base.
template <class X>
struct StorageOf : StorageOf<typename X::Super> {
  using StorageOf<typename X::Super>::StorageOf;
  std::size_t size() const noexcept override { return sizeof *this; }

  decltype(oldValues(X::Impl::table.rows)) old;
};
template <>
struct StorageOf<ModelElement> : Storage {
  using Storage::Storage;
};

/// The I-th own property of X, in an element and in an undo record.
template <class X, std::size_t I>
struct Access {
  static constexpr const auto& row = std::get<I>(X::Impl::table.rows);
  static auto& slot(Element& e) { return stored(static_cast<typename X::Impl&>(e).*row.member); }
  static const auto& slot(const Element& e) {
    return stored(static_cast<const typename X::Impl&>(e).*row.member);
  }
  static auto& old(Storage& s) { return std::get<I>(static_cast<StorageOf<X>&>(s).old); }
  static const auto& old(const Storage& s) {
    return std::get<I>(static_cast<const StorageOf<X>&>(s).old);
  }
};

/// The package that a class says to be part of, by a function `packageOf` in its own namespace.
template <class X>
AbstractMetaPackage& packageFor() {
  return packageOf(std::type_identity<X>());
}

template <class X, std::size_t I>
consteval PropertyServices emitServices() {
  using A = Access<X, I>;
  using Member = StoredOf<typename std::remove_cvref_t<decltype(A::row)>::Member>;
  using K = Kind<Member>;

  PropertyServices services;
  constexpr bool isPrimitive = K::value == ValueKind::Single && !requires { K::type(); };
  services.get = [](const Element& e, ProxyTag tag) -> Value {
    if constexpr (isPrimitive)
      if (!e.isGiven(A::row.position)) return Value();
    if constexpr (requires { typename K::Handle; })
      if (!A::slot(e)) tag = ProxyTag::Keep;  // an ended proxy stands for nothing
    return K::get(A::slot(e), tag);
  };
  services.set = [](Element& e, const Value& value) {
    auto& element = static_cast<typename X::Impl&>(e);
    if constexpr (K::value != ValueKind::Single) {
      Transaction unit(e.getModel());
      K::assign(A::slot(e), value);
      unit.commit();
    } else if constexpr (!isPrimitive) {
      using H = typename K::Handle;
      element.template set<A::row.member>(value.isEmpty() ? H() : value.getValue<H>());
    } else {
      if (value.isEmpty())
        element.template unset<A::row.member>();
      else
        element.template set<A::row.member>(value.getValue<Member>());
    }
  };
  if constexpr (K::value != ValueKind::Single)
    services.insert = [](Element& e, const Value& value) { K::insert(A::slot(e), value); };
  if constexpr (requires { typename K::Old; }) {
    services.save = [](const Element& e, Storage& s) { A::old(s) = A::slot(e); };
    services.exchange = [](Element& e, Storage& s) noexcept {
      std::swap(A::slot(e), A::old(s));
      if constexpr (!isPrimitive)
        if (A::slot(e).get()) e.noteReference(*A::slot(e).get());
    };
    services.getOld = [](const Storage& s, ProxyTag tag) -> Value {
      return K::get(A::old(s), tag);
    };
  }
  services.isUnchanged = [](const Element& e, const Storage& s) -> bool {
    if constexpr (requires { typename K::Old; }) {
      return A::slot(e) == A::old(s);
    } else {
      const auto now = K::snapshot(A::slot(e));
      const Rewound rewound(s, A::row.position);
      return now == K::snapshot(A::slot(e));
    }
  };
  services.has = [](const Element& e) -> bool {
    if constexpr (K::value != ValueKind::Single)
      return !A::slot(e).empty();
    else if constexpr (isPrimitive)
      return e.isGiven(A::row.position);
    else
      return static_cast<bool>(A::slot(e));
  };
  services.slot = [](const Element& e) -> const void* {
    if constexpr (std::is_base_of_v<ModelElement, Member>)
      return static_cast<const ModelElement*>(&A::slot(e));
    else
      return &A::slot(e);
  };
  services.targets = [](const Element& e, TargetVisitor& visitor) {
    if constexpr (requires { K::type(); }) K::targets(A::slot(e), visitor);
  };
  if constexpr (requires(const ModelElement& element, Member& slot) { K::add(slot, element); })
    services.add = [](Element& e, const ModelElement& element) { K::add(A::slot(e), element); };
  if constexpr (K::isOwning)
    services.link = [](Element& e, bool links) noexcept { K::link(A::slot(e), links); };
  if constexpr (requires { typename K::Handle; })
    services.refer = [](Element& e, std::size_t, Element* target) {
      static_cast<typename X::Impl&>(e).template set<A::row.member>(
          typename K::Handle(ModelElement(target)));
    };
  else if constexpr (requires(Member & sequence) { sequence.put(0, nullptr); })
    services.refer = [](Element& e, std::size_t place, Element* target) {
      A::slot(e).put(place, target);
    };
  services.release = [](Element& e, Element& target) {
    if constexpr (requires { K::type(); }) K::release(A::slot(e), e, A::row.position, target);
  };
  services.replace = [](Element& e, Element& target, Element& other) {
    if constexpr (requires { K::type(); })
      K::replace(A::slot(e), e, A::row.position, target, other);
  };
  services.clear = [](Element& e) noexcept {
    if constexpr (requires { K::type(); }) K::clear(A::slot(e));
  };
  services.forget = [](Element& e) noexcept {
    if constexpr (requires { K::type(); }) K::forget(A::slot(e));
  };
  if constexpr (std::derived_from<Member, Collection>)
    services.collection = [](Element& e) -> Collection* { return &A::slot(e); };
  if constexpr (K::value != ValueKind::Single)
    services.size = [](const Element& e) -> std::size_t { return A::slot(e).size(); };
  if constexpr (requires(const Member& slot) { K::at(slot, 0, ProxyTag::Keep); })
    services.at = [](const Element& e, std::size_t place, ProxyTag tag) {
      return K::at(A::slot(e), place, tag);
    };
  if constexpr (requires(const Member& slot) { K::keys(slot); }) {
    services.find = [](const Element& e, const Value& key) { return K::find(A::slot(e), key); };
    services.keys = [](const Element& e) { return K::keys(A::slot(e)); };
    services.rekey = [](Element& e, Element& child, const void* key) {
      K::rekey(A::slot(e), child, key);
    };
  }
  return services;
}

template <class X, std::size_t I>
consteval PropertyInfo emitProperty() {
  using A = Access<X, I>;
  using Member = StoredOf<typename std::remove_cvref_t<decltype(A::row)>::Member>;
  using K = Kind<Member>;
  PropertyInfo info{A::row.name,  A::row.id,  A::row.position,     K::value, K::isOwning,
                    A::row.flags, A::row.key, X::Impl::table.name, nullptr,  emitServices<X, I>()};
  if constexpr (requires { K::type(); }) {
    info.isLink = true;
    info.type = &K::type;
    info.typeName = [] { return K::type().name; };
  } else {
    info.primitive = &typeid(typename K::Primitive);
    info.typeName = &valueName<typename K::Primitive>;
  }
  info.package = &packageFor<X>;
  return info;
}

template <class X>
inline constexpr std::size_t ownCount = std::tuple_size_v<decltype(X::Impl::table.rows)>;
template <class X>
inline constexpr auto ownProperties = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array<PropertyInfo, sizeof...(I)>{emitProperty<X, I>()...};
}
(std::make_index_sequence<ownCount<X>>());

template <class X>
inline constexpr std::size_t count = count<typename X::Super> + ownCount<X>;
template <>
inline constexpr std::size_t count<ModelElement> = 0;

template <class X>
inline constexpr auto allProperties = [] {
  static_assert(count<X> < 32, "elements have a bit for each position");
  std::array<const PropertyInfo*, count<X>> all{};
  std::size_t n = 0;
  for (const PropertyInfo* inherited : allProperties<typename X::Super>) all[n++] = inherited;
  for (const PropertyInfo& own : ownProperties<X>) {
    all[n++] = &own;
    if (own.position != static_cast<int>(n)) throw "positions continue those of the base";
  }
  return all;
}();
template <>
inline constexpr std::array<const PropertyInfo*, 0> allProperties<ModelElement>{};

/// Those of all whose values are elements, the owning ones first.
template <class X>
inline constexpr auto linkProperties = [] {
  constexpr auto& all = allProperties<X>;
  constexpr auto isLink = [](const PropertyInfo* property) { return property->isLink; };
  std::array<const PropertyInfo*, std::count_if(all.begin(), all.end(), isLink)> links{};
  std::size_t n = 0;
  for (const bool isOwning : {true, false})
    for (const PropertyInfo* property : all)
      if (isLink(property) && property->isOwning == isOwning) links[n++] = property;
  return links;
}();
template <class X>
inline constexpr std::size_t owningCount = std::count_if(linkProperties<X>.begin(),
                                                         linkProperties<X>.end(),
                                                         [](auto* link) { return link->isOwning; });

template <class X>
consteval auto constructorOf() -> Element* (*)(void*) {
  if constexpr (X::Impl::table.instances == Instances::Concrete)
    return [](void* memory) -> Element* { return new (memory) typename X::Impl; };
  return nullptr;
}

/// What `ClassInfo::note` calls, inherited properties first.
template <class X>
void noteTargets(const Element& element, Referrers& referrers) noexcept {
  if constexpr (!std::is_same_v<X, ModelElement>) {
    noteTargets<typename X::Super>(element, referrers);
    const auto note = [&](const auto& row) {
      const auto& slot = static_cast<const typename X::Impl&>(element).*row.member;
      using K = Kind<std::remove_cvref_t<decltype(slot)>>;
      if constexpr (requires { K::note(slot, element, referrers); })
        K::note(slot, element, referrers);
    };
    std::apply([&](const auto&... rows) { (note(rows), ...); }, X::Impl::table.rows);
  }
}

template <class X>
consteval auto builderOf() -> std::unique_ptr<ModelElement::Builder> (*)(const Model&) {
  if constexpr (X::Impl::table.instances == Instances::Concrete)
    return [](const Model& model) -> std::unique_ptr<ModelElement::Builder> {
      return std::make_unique<typename X::Builder>(model);
    };
  return nullptr;
}

/// One object for the whole process, whichever shared library asks.
template <class X>
ORB_ZERO_API inline constexpr ClassInfo classOf{
    X::Impl::table.name,
    X::Impl::table.id,
    &classOf<typename X::Super>,
    ownProperties<X>,
    allProperties<X>,
    linkProperties<X>,
    std::span(linkProperties<X>).first(owningCount<X>),
    std::span(linkProperties<X>).subspan(owningCount<X>),
    sizeof(typename X::Impl),
    constructorOf<X>(),
    [](Element& e) { return std::unique_ptr<Storage>(new (e.model()) StorageOf<X>(e)); },
    ownOperations<X>,
    builderOf<X>(),
    &packageFor<X>,
    &noteTargets<X>};
template <>
ORB_ZERO_API inline constexpr ClassInfo classOf<ModelElement>{
    "orb.zero.ModelElement",
    uuidOf("6d3f1c52-7a0e-3b64-9d2b-0c6a5e1f8b47"),
    nullptr,
    {},
    {},
    {},
    {},
    {},
    sizeof(ModelElement::Impl),
    nullptr,
    nullptr,
    {},
    nullptr,
    &packageFor<ModelElement>,
    &noteTargets<ModelElement>};

/// The records of the listed classes.
template <class... X>
std::span<const ClassInfo* const> classesOf(ClassList<X...>) {
  // Used: others refer to the records, so their definitions must not be optimised away.
  [[gnu::used]] static constexpr std::array records{&X::record...};
  [[gnu::used]] static constexpr std::array numbers{&X::classNumber...};
  static constexpr std::array<const ClassInfo*, sizeof...(X)> classes{&classOf<X>...};
  return classes;
}

}  // namespace orb::zero::meta

namespace orb::zero {

template <class X, class Base>
constinit const meta::ClassInfo* const Handle<X, Base>::record = &meta::classOf<X>;
template <class X, class Base>
const std::uint32_t Handle<X, Base>::classNumber = meta::enlist(meta::classOf<X>);

}  // namespace orb::zero
