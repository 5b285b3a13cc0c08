#pragma once

namespace orb::zero {

/// What an insertion does when another element is already stored under its key.
enum class CollisionResolution {
  Report,   ///< raises "UniquenessConstraint"
  Keep,     ///< leaves the stored element
  Replace,  ///< takes the stored element out; it becomes a top-level element
};

}  // namespace orb::zero
