#pragma once

#include <string>

namespace torvan::slicer {

/// Writes the text to standard output, or to a file if the name is not empty. A file appears whole
/// or not at all, also when the program is interrupted. Throws an exception with one line.
void writeOutput(const std::string& text, const std::string& file);

}  // namespace torvan::slicer
