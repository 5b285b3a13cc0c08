#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace torvan::slicer {

/// Writes the text to standard output, or to a file if the name is not empty. A file appears whole
/// or not at all, also when the program is interrupted. Throws std::runtime_error with one line.
void writeOutput(const std::string& text, const std::string& file);
/// The same for a file and what `write` puts into it; what that throws passes through.
void writeOutput(const std::function<void(std::ostream&)>& write, const std::string& file);

}  // namespace torvan::slicer
