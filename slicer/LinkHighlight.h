#pragma once

#include <vector>

#include "Diagram.h"

namespace torvan::slicer {

/// Per link of one diagram, whether it lies on a way from one highlighted block to another one.
/// `isHighlighted` has one entry per block; splits are passed through whatever their entry says.
std::vector<bool> highlightedLinks(const Diagram& diagram, const std::vector<bool>& isHighlighted);

}  // namespace torvan::slicer
