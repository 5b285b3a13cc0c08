#include "benchmarks/Memory.h"

#include <malloc.h>

#include <fstream>
#include <string>

namespace torvan::datamodel::benchmarks {
namespace {

double residentBytes(Resident which) {
  const char* const wanted = which == Resident::Now ? "VmRSS:" : "VmHWM:";
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (double kilobytes = 0; word == wanted && status >> kilobytes) return kilobytes * 1024;
  return 0;
}

}  // namespace

double allocatedBytes() {
  const auto info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

double memoryTaken(Resident which, const std::function<void()>& run) {
  malloc_trim(0);
  const double before = residentBytes(Resident::Now);
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak starts anew
  run();
  malloc_trim(0);
  return residentBytes(which) - before;
}

}  // namespace torvan::datamodel::benchmarks
