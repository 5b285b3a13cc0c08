#include "ParameterReader.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "DiagramError.h"
#include "XmlNodes.h"

namespace torvan::slicer {
namespace {

Parameter readInlineMatrix(const pugi::xml_node& node) {
  const auto place = [](const pugi::xml_node& cell) {
    return std::tuple(cell.attribute("line").as_uint(), cell.attribute("column").as_uint());
  };
  const auto children = node.children("data");
  std::vector<pugi::xml_node> cells(children.begin(), children.end());
  std::stable_sort(cells.begin(), cells.end(),
                   [&](const auto& a, const auto& b) { return place(a) < place(b); });
  const bool isText = std::string_view(node.name()).ends_with("String");
  Parameter result;
  for (const pugi::xml_node& cell : cells) {
    if (isText) {
      result.texts.emplace_back(cell.attribute("value").value());
    } else {
      const pugi::xml_attribute real = cell.attribute("realPart");
      result.numbers.push_back((real ? real : cell.attribute("value")).as_double());
    }
  }
  return result;
}

}  // namespace

ParameterReader::ParameterReader(std::vector<Parameter> table, std::string source)
    : table_(std::move(table)), source_(std::move(source)) {}

Parameter ParameterReader::read(const pugi::xml_node& block, std::string_view parameterName) const {
  const pugi::xml_node node = childAs(block, parameterName);
  if (!node.attribute("binary").as_bool()) return readInlineMatrix(node);
  const std::string position = node.attribute("position").value();
  const std::size_t index = node.attribute("position").as_uint(~0U);
  if (index >= table_.size())
    throw DiagramError(source_, "has no parameter number " + position + " in its table");
  return table_[index];
}

}  // namespace torvan::slicer
