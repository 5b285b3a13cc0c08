#include "OutputFile.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include <orb/zero/io/WholeFile.h>

#include "Uninterrupted.h"

namespace torvan::slicer {
namespace {

/// Whether it takes what is written, but cannot be replaced: a device or a pipe.
bool isChannel(const std::string& file) {
  std::error_code none;
  const auto status = std::filesystem::status(file, none);
  return std::filesystem::is_other(status);
}

}  // namespace

void writeOutput(const std::string& text, const std::string& file) {
  // Behind the second name may be a file, which is to be continued, not to be replaced.
  if (file == "-" || file == "/dev/stdout") {
    if (!(std::cout << text << std::flush)) throw std::runtime_error("cannot write the output");
    return;
  }
  if (isChannel(file)) {
    if (!(std::ofstream(file, std::ios::app | std::ios::binary) << text << std::flush))
      throw std::runtime_error("cannot write '" + file + "'");
    return;
  }
  const Uninterrupted whole;
  orb::zero::io::writeWhole(file, [&text](std::ostream& out) { out << text; });
}

}  // namespace torvan::slicer
