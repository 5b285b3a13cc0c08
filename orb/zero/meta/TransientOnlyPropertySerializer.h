#pragma once

#include <orb/zero/meta/PropertySerializer.h>

namespace orb::zero::meta {

/// For values that live in memory only: their text is empty, and any text stands for an empty
/// value.
template <class T>
class TransientOnlyPropertySerializer final : public TypedPropertySerializer<T> {
 public:
  bool isTransient() const noexcept override { return true; }

 protected:
  void write(const T&, std::string&) const override {}
  T read(std::string_view) const override { return T(); }
};

}  // namespace orb::zero::meta
