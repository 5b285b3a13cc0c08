#pragma once

#include <cstdint>

#include <torvan/datamodel/IndexableValue.h>
#include <torvan/datamodel/impl/LatticeValueImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API IndexableValue::Impl : public orb::zero::ImplOf<IndexableValue> {
 public:
  static constexpr Table table{Instances::Abstract, "torvan.datamodel.IndexableValue",
                               "009181ef-dfd6-37d8-b107-6b5b7a61007d",
                               Op{&IndexableValue::at, "at", Abstract, "startIndex", "endIndex"},
                               Op{&IndexableValue::ref, "ref", Abstract, "startIndex", "endIndex"}};

  virtual LatticeValue at(std::uint16_t start, std::uint16_t end) const = 0;
  virtual Ref ref(std::uint16_t start, std::uint16_t end) = 0;
};

/// Number of indices of a range; one that ends before it starts is empty, and an end of 0 stands
/// for the start.
constexpr std::uint16_t countOf(std::uint16_t start, std::uint16_t end) noexcept {
  if (end == 0) return 1;
  return static_cast<std::uint16_t>(end < start ? 0 : end - start + 1);
}

}  // namespace torvan::datamodel
