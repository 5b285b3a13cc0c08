#pragma once

#include <string>

namespace torvan::slicer {

/// Writes the text to standard output, if the name is "-", into a device or a pipe, or to a file. A
/// file appears whole or not at all, also when the program is interrupted. Throws an exception with
/// one line.
void writeOutput(const std::string& text, const std::string& file);

}  // namespace torvan::slicer
