#pragma once

#include <set>
#include <type_traits>
#include <vector>

#include <orb/zero/hb/ValueMarshaler.h>
#include <tyve/factory/Marshaler.h>

namespace orb::zero::hb {

/// Tells apart how many values of type T are given to the host. What was never given reads as the
/// element itself reads it then.
template <class T>
class AbstractTypedValueMarshaler : public ValueMarshaler {
 public:
  using ValueMarshaler::ValueMarshaler;

  tyve::Value toHost(const Value& value) const final {
    if (value.isEmpty()) return std::is_enum_v<T> ? none() : one(T());
    switch (value.type()->multiplicity) {
      case Multiplicity::Optional: {
        const auto& held = value.getValue<boost::optional<T>>();
        return held ? one(*held) : none();
      }
      case Multiplicity::Sequence:
        return many(value.getValue<std::vector<T>>());
      case Multiplicity::Set: {
        const auto& held = value.getValue<std::set<T>>();
        return many({held.begin(), held.end()});
      }
      default:
        return one(value.getValue<T>());
    }
  }

 protected:
  virtual tyve::Value one(const T& value) const = 0;
  virtual tyve::Value many(const std::vector<T>& values) const = 0;

 private:
  /// The empty object; of a text, an empty one.
  tyve::Value none() const {
    static const tyve::Name text = tyve::intern(tyve::factory::StringPolicy::word);
    return getTypeWord() == text ? tyve::Value::text({}) : tyve::Value();
  }
};

}  // namespace orb::zero::hb
