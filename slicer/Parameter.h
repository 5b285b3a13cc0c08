#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace torvan::slicer {

/// The value of one block parameter: a matrix of texts or of numbers (integers and booleans are
/// kept as numbers), row by row. A list counts as one column of everything it holds.
struct Parameter {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<std::string> texts;
  std::vector<double> numbers;
};

}  // namespace torvan::slicer
