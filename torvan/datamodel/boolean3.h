#pragma once

namespace torvan::datamodel {

/// The answer of the three-valued order (`LatticeValue::le`). There is no literal 0.
enum class boolean3 : int {
  T = 1,   ///< less than or equal
  F = 2,   ///< strictly greater
  NA = 3,  ///< cannot be compared
};

}  // namespace torvan::datamodel
