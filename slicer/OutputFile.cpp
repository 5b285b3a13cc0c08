#include "OutputFile.h"

#include <iostream>
#include <stdexcept>

#include <orb/zero/io/WholeFile.h>

#include "Uninterrupted.h"

namespace torvan::slicer {

void writeOutput(const std::string& text, const std::string& file) {
  if (file.empty()) {
    if (!(std::cout << text << std::flush)) throw std::runtime_error("cannot write the output");
    return;
  }
  const Uninterrupted whole;
  orb::zero::io::writeWhole(file, [&text](std::ostream& out) { out << text; });
}

}  // namespace torvan::slicer
