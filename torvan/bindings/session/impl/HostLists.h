#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <orb/zero/Exception.h>
#include <orb/zero/hb/Forwarding.h>
#include <orb/zero/hb/ValueMarshaler.h>

namespace torvan::datamodel::hb {

/// Any number of values for the host, which are a list even if it is one.
struct List {
  std::vector<tyve::Value> values;
};

/// The items of a host value, each converted: of a list or an array, of one single value, of
/// nothing.
template <class T>
std::vector<T> itemsOf(const tyve::Value& value) {
  std::vector<T> items;
  items.reserve(value.is(tyve::Kind::Char) ? 1 : value.count());
  orb::zero::hb::ValueMarshaler::forEach(value, [&](const tyve::Value& item) {
    items.push_back(orb::zero::hb::Passing<T>::fromHost(item));
  });
  return items;
}

/// Keys with a value each.
template <class Key, class T>
struct Entries {
  std::vector<Key> keys;
  std::vector<T> values;
};

/// From a list of keys and one of as many values; "InvalidValue" is raised for others.
template <class Key, class T>
Entries<Key, T> entriesOf(const tyve::Value& keys, const tyve::Value& values) {
  Entries<Key, T> entries{itemsOf<Key>(keys), itemsOf<T>(values)};
  if (entries.keys.size() != entries.values.size())
    orb::zero::raise("InvalidValue", {values.describe(), "there are not as many values as keys"});
  return entries;
}

/// From a struct, and nothing beside it, or as above.
template <class T>
Entries<std::string, T> fieldsOf(const tyve::Value& fields, const tyve::Value& values) {
  if (!fields.is(tyve::Kind::Struct)) return entriesOf<std::string, T>(fields, values);
  if (!fields.isScalar())
    orb::zero::raise("InvalidValue", {fields.describe(), "one struct is needed"});
  if (!values.isEmpty())
    orb::zero::raise("InvalidValue", {values.describe(), "the struct has the values"});
  Entries<std::string, T> entries;
  for (std::size_t i = 0; i < fields.fields().size(); ++i) {
    entries.keys.push_back(fields.fields()[i]);
    entries.values.push_back(orb::zero::hb::Passing<T>::fromHost(fields.field(i)));
  }
  return entries;
}

}  // namespace torvan::datamodel::hb

template <>
struct orb::zero::hb::Passing<torvan::datamodel::hb::List> {
  static tyve::Name word() { return tyve::intern("cell"); }
  static tyve::Value toHost(torvan::datamodel::hb::List list) {
    return tyve::Value::cell(std::move(list.values));
  }
};
