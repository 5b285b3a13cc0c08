#pragma once

#include <string_view>
#include <tuple>

#include <orb/zero/meta/ClassInfo.h>

/// What a class declares of itself, once: a constexpr `Table` with one `Row` per own property.
namespace orb::zero::meta {

/// One property: its slot in the Impl, name, position, UUID, flags and, for a keyed collection, the
/// name of the key.
template <class Impl, class M>
struct Row {
  using Member = M;
  using Setter = void (Impl::*)(const M&);

  consteval Row(M Impl::*slot, std::string_view label, int place, std::string_view uuidText,
                unsigned flagSet, std::string_view qualifier = {}, Setter own = nullptr)
      : member(slot),
        setter(own),
        name(label),
        key(qualifier),
        id(uuidOf(uuidText)),
        position(place),
        flags(static_cast<std::uint8_t>(flagSet)) {}

  M Impl::*member;
  Setter setter;  ///< where setting takes more than storing
  std::string_view name, key;
  uuid id;
  int position;
  std::uint8_t flags;
};

enum class Instances { Abstract, Concrete };

/// One class: whether it has instances, its dotted name, UUID and own properties.
template <class... Rows>
struct Table {
  consteval Table(Instances made, std::string_view dotted, std::string_view uuidText, Rows... all)
      : instances(made), name(dotted), id(uuidOf(uuidText)), rows(all...) {}

  Instances instances;
  std::string_view name;
  uuid id;
  std::tuple<Rows...> rows;
};

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
