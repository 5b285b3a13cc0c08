#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "Diagram.h"

namespace torvan::slicer {

/// Whether a highlighted way may begin or end where a link meets the block at this end of it.
using MayEnd = std::function<bool(std::size_t link, const PortIndex& end)>;

/// Per link of one diagram, whether it lies on a way from one such end to another one. Splits are
/// passed through, and not asked for.
std::vector<bool> highlightedLinks(const Diagram& diagram, const MayEnd& mayEnd);

}  // namespace torvan::slicer
