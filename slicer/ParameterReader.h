#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>
#include <vector>

#include "Parameter.h"

namespace torvan::slicer {

/// Finds the parameters of blocks, whether a block holds them itself or refers to the parameter
/// table of its file.
class ParameterReader {
 public:
  /// `source` names the file in error messages.
  ParameterReader(std::vector<Parameter> table, std::string source);

  /// The value of one parameter; empty when the block has none of that name.
  /// Throws DiagramError for a reference to an entry that the table does not have.
  Parameter read(const pugi::xml_node& block, std::string_view parameterName) const;

 private:
  std::vector<Parameter> table_;
  std::string source_;
};

}  // namespace torvan::slicer
