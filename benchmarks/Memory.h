#pragma once

#include <functional>

namespace torvan::datamodel::benchmarks {

/// Bytes that the allocator has handed out.
double allocatedBytes();

enum class Resident { Now, Peak };

/// How much more of the process is in memory after `run`, or was at the peak during it.
double memoryTaken(Resident which, const std::function<void()>& run);

}  // namespace torvan::datamodel::benchmarks
