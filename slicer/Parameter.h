#pragma once

#include <string>
#include <vector>

namespace torvan::slicer {

/// The value of one block parameter: a matrix of texts or of numbers (integers and booleans are
/// kept as numbers), row by row, or all that a list holds.
struct Parameter {
  std::vector<std::string> texts;
  std::vector<double> numbers;
};

}  // namespace torvan::slicer
