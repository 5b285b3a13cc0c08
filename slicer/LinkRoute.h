#pragma once

#include <vector>

#include "Diagram.h"

namespace torvan::slicer {

/// The corners of a link from its source to its target port, both included: through the bends the
/// file gives, else along horizontal and vertical lines of our own.
std::vector<Point> routeLink(const Diagram& diagram, const Link& link);

}  // namespace torvan::slicer
