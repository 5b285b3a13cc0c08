#pragma once

#include <vector>

#include "Diagram.h"
#include "Drawing.h"

namespace torvan::slicer {

/// Per link of the outermost diagram, whether it lies on a way from one highlighted leaf to another
/// one or back to itself: through splits, super-blocks and tags.
std::vector<bool> highlightedLinks(const Diagram& diagram, const Highlight& highlight);

}  // namespace torvan::slicer
