#pragma once

#include <array>
#include <concepts>
#include <string_view>
#include <tuple>
#include <utility>

#include <orb/zero/meta/ClassInfo.h>

/// What a class declares of itself, once: a constexpr `Table` with one `Row` per own property and
/// one `Op` per operation.
namespace orb::zero::meta {

/// One property: its slot in the Impl, name, position, UUID, flags and, for a keyed collection, the
/// name of the key.
template <class Impl, class M>
struct Row {
  using Member = M;
  static constexpr bool isOperation = false;

  consteval Row(M Impl::*slot, std::string_view label, int place, std::string_view uuidText,
                unsigned flagSet, std::string_view qualifier = {})
      : member(slot),
        name(label),
        key(qualifier),
        id(uuidOf(uuidText)),
        position(place),
        flags(static_cast<std::uint8_t>(flagSet)) {
    if constexpr (requires { M::isRepeatable; })
      if (flagSet & Unique) throw "the property holds items more than once";
  }

  M Impl::*member;
  std::string_view name, key;
  uuid id;
  int position;
  std::uint8_t flags;
};

/// Whether a class defines an operation itself, or leaves that to the classes derived from it.
enum class Body : std::uint8_t { Abstract, Defined };

/// One operation that is offered at run time: the method of the handle, its name, and the names of
/// its arguments. The types follow from the method.
template <class Method, std::size_t n>
struct Op {
  static constexpr bool isOperation = true;

  template <std::convertible_to<std::string_view>... Names>
  consteval Op(Method function, std::string_view label, Body where, Names... names)
      : method(function), name(label), body(where), arguments{names...} {}

  Method method;
  std::string_view name;
  Body body;
  std::array<std::string_view, n> arguments;
};
template <class Method, class... Names>
Op(Method, std::string_view, Body, Names...) -> Op<Method, sizeof...(Names)>;

/// The entry of a table, if it is an operation, or if it is none, as is asked for.
template <bool operation, class Entry>
constexpr auto pick(const Entry& entry) {
  if constexpr (Entry::isOperation == operation)
    return std::tuple<Entry>(entry);
  else
    return std::tuple<>();
}

enum class Instances { Abstract, Concrete };

/// One class: whether it has instances, its dotted name, UUID, own properties and operations.
template <class Rows, class Operations>
struct Table {
  template <class... Entries>
  consteval Table(Instances made, std::string_view dotted, std::string_view uuidText,
                  const Entries&... all)
      : instances(made),
        name(dotted),
        id(uuidOf(uuidText)),
        rows(std::tuple_cat(pick<false>(all)...)),
        operations(std::tuple_cat(pick<true>(all)...)) {}

  Instances instances;
  std::string_view name;
  uuid id;
  Rows rows;
  Operations operations;
};
template <class... Entries>
Table(Instances, std::string_view, std::string_view, const Entries&...)
    -> Table<decltype(std::tuple_cat(pick<false>(std::declval<Entries>())...)),
             decltype(std::tuple_cat(pick<true>(std::declval<Entries>())...))>;

/// The position of a slot, found by its member pointer: one that the table lacks does not compile.
template <class Impl, class M>
consteval int positionOf(M Impl::*member) {
  int position = 0;
  const auto match = [&](const auto& row) {
    if constexpr (std::is_same_v<decltype(row.member), M Impl::*>)
      if (row.member == member) position = row.position;
  };
  std::apply([&](const auto&... rows) { (match(rows), ...); }, Impl::table.rows);
  return position ? position : throw "not in the table";
}

}  // namespace orb::zero::meta
