#pragma once

#include <iosfwd>
#include <vector>

#include "benchmarks/Runner.h"

namespace torvan::datamodel::benchmarks {

/// One table of all results: what ours and the other sides take at least, the ratio to the side
/// that the target names, or else to the first one, and whether the targets are met.
void writeTable(std::ostream& out, const std::vector<Result>& results);

/// The same as data, with the medians.
void writeJson(std::ostream& out, const std::vector<Result>& results);

}  // namespace torvan::datamodel::benchmarks
