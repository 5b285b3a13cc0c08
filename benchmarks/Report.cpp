#include "benchmarks/Report.h"

#include <rapidjson/ostreamwrapper.h>
#include <rapidjson/prettywriter.h>

#include <algorithm>
#include <cstdio>
#include <iomanip>
#include <ostream>
#include <string>

namespace torvan::datamodel::benchmarks {
namespace {

using Row = std::vector<std::string>;

std::string formatted(double value, int digits) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}
/// Three digits or four.
std::string shortened(double value) {
  return formatted(value, value < 1 ? 3 : value < 10 ? 2 : value < 1000 ? 1 : 0);
}
/// As in the source.
std::string plain(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::string textOf(const Target& target, const Unit& unit) {
  const std::string more = plain(target.more) + ' ' + unit.name;
  if (target.side.empty()) return "<= " + more;
  return "<= " + plain(target.factor) + " x " + target.side +
         (target.more != 0 ? " + " + more : "");
}

/// The side that ours is seen in relation to, or nothing.
const Measured* reference(const Result& result) {
  for (const Target& target : result.of->targets)
    if (const Measured* const side = result.find(target.side)) return side;
  for (const Measured& side : result.sides)
    if (side.side != "ours") return &side;
  return nullptr;
}

bool meetsAll(const Result& result) {
  const auto& targets = result.of->targets;
  return std::all_of(targets.begin(), targets.end(),
                     [&](const Target& target) { return result.meets(target); });
}

/// The names of all sides, in the order in which they come up.
Row columnsOf(const std::vector<Result>& results) {
  Row names;
  for (const Result& result : results)
    for (const Measured& side : result.sides)
      if (std::find(names.begin(), names.end(), side.side) == names.end())
        names.push_back(side.side);
  return names;
}

Row rowOf(const Result& result, const Row& columns) {
  Row row{result.of->title(), result.of->unit.name};
  for (const std::string& column : columns) {
    const Measured* const side = result.find(column);
    row.push_back(side ? shortened(side->least) : "");
  }
  const Measured* const other = reference(result);
  row.push_back(other ? formatted(result.find("ours")->least / other->least, 2) : "");
  std::string targets;
  for (const Target& target : result.of->targets)
    targets += (targets.empty() ? "" : ", ") + textOf(target, result.of->unit);
  row.push_back(targets);
  row.push_back(targets.empty() ? "" : meetsAll(result) ? "yes" : "NO");
  return row;
}

void writeRow(std::ostream& out, const Row& row, const std::vector<int>& widths) {
  for (std::size_t i = 0; i < row.size(); ++i) {
    const bool isText = i < 2 || i + 2 >= row.size();
    out << "| " << (isText ? std::left : std::right) << std::setw(widths[i]) << row[i] << ' ';
  }
  out << "|\n";
}

}  // namespace

void writeTable(std::ostream& out, const std::vector<Result>& results) {
  const Row columns = columnsOf(results);
  Row head{"case", "unit"};
  head.insert(head.end(), columns.begin(), columns.end());
  head.insert(head.end(), {"ratio", "target", "met"});
  std::vector<Row> rows{head};
  for (const Result& result : results) rows.push_back(rowOf(result, columns));

  std::vector<int> widths(head.size(), 0);
  for (const Row& row : rows)
    for (std::size_t i = 0; i < row.size(); ++i)
      widths[i] = std::max(widths[i], static_cast<int>(row[i].size()));
  Row rule;
  for (const int width : widths) rule.emplace_back(static_cast<std::size_t>(width), '-');
  rows.insert(rows.begin() + 1, rule);
  for (const Row& row : rows) writeRow(out, row, widths);
}

void writeJson(std::ostream& out, const std::vector<Result>& results) {
  rapidjson::OStreamWrapper stream(out);
  rapidjson::PrettyWriter writer(stream);
  writer.SetIndent(' ', 2);
  writer.SetMaxDecimalPlaces(3);
  writer.StartArray();
  for (const Result& result : results) {
    writer.StartObject();
    writer.Key("case");
    writer.String(result.of->name.c_str());
    writer.Key("size");
    writer.Uint64(result.of->size);
    writer.Key("unit");
    writer.String(result.of->unit.name);
    writer.Key("rounds");
    writer.Uint64(result.rounds);
    writer.Key("sides");
    writer.StartObject();
    for (const Measured& side : result.sides) {
      writer.Key(side.side.c_str());
      writer.StartObject();
      writer.Key("minimum");
      writer.Double(side.least);
      writer.Key("median");
      writer.Double(side.median);
      writer.EndObject();
    }
    writer.EndObject();
    if (const Measured* const other = reference(result)) {
      writer.Key("ratio");
      writer.Double(result.find("ours")->least / other->least);
    }
    if (!result.of->targets.empty()) {
      writer.Key("targets");
      writer.StartArray();
      for (const Target& target : result.of->targets)
        writer.String(textOf(target, result.of->unit).c_str());
      writer.EndArray();
      writer.Key("met");
      writer.Bool(meetsAll(result));
    }
    writer.EndObject();
  }
  writer.EndArray();
  stream.Flush();
  out << '\n';
}

}  // namespace torvan::datamodel::benchmarks
