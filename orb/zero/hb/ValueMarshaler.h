#pragma once

#include <orb/zero/Value.h>
#include <orb/zero/hb/Api.h>
#include <tyve/Value.h>

namespace orb::zero::hb {

/// Converts the values of one type between elements and the host. All threads may use it.
class ORB_ZERO_HB_API ValueMarshaler {
 public:
  /// `typeWord` is that of one value, see `tyve::factory::TypeRepository`.
  explicit ValueMarshaler(tyve::Name typeWord) noexcept : typeWord_(typeWord) {}
  ValueMarshaler(const ValueMarshaler&) = delete;
  ValueMarshaler& operator=(const ValueMarshaler&) = delete;
  virtual ~ValueMarshaler();

  tyve::Name getTypeWord() const noexcept { return typeWord_; }

  /// A value, an optional one, a sequence or a set. Raises "CannotCastIncompatibleTypes" for one of
  /// another type.
  virtual tyve::Value toHost(const Value& value) const = 0;
  /// One value; an empty `Value` of what is empty. Raises "CannotCastIncompatibleTypes" or, as a
  /// failure of the host, "WrongValue" when it is none.
  virtual Value fromHost(const tyve::Value& value) const = 0;
  /// All values of an array, a cell array or a list of texts, as a sequence. Raises the same.
  virtual Value fromHostMany(const tyve::Value& value) const = 0;

  /// Shows each value of an array, or in a cell array; a row of characters is one.
  template <class Visit>
  static void forEach(const tyve::Value& value, Visit visit) {
    if (value.is(tyve::Kind::Char)) return visit(value);
    if (value.is(tyve::Kind::Cell)) {
      for (const tyve::Value& item : value.cells()) visit(item);
    } else {
      for (std::size_t i = 0; i < value.count(); ++i) visit(value.at(i));
    }
  }

 private:
  tyve::Name typeWord_;
};

/// Converts elements of a class. Of an element of another class, or of what is none,
/// "CannotCastIncompatibleTypes" is raised with the name of the class.
class ORB_ZERO_HB_API ElementMarshaler final : public ValueMarshaler {
 public:
  explicit ElementMarshaler(const meta::ClassInfo& type);

  tyve::Value toHost(const Value& value) const override;
  Value fromHost(const tyve::Value& value) const override;
  Value fromHostMany(const tyve::Value& value) const override;

 private:
  const meta::ClassInfo& class_;
};

}  // namespace orb::zero::hb
