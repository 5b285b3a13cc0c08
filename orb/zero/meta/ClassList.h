#pragma once

namespace orb::zero::meta {

/// A list of classes, to build on at compile time.
template <class... X>
struct ClassList {};

}  // namespace orb::zero::meta
