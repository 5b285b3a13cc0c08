#include "DiagramReader.h"

#include <boost/algorithm/string/trim.hpp>
#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Archive.h"
#include "DiagramError.h"
#include "Escape.h"
#include "HtmlText.h"
#include "ParameterReader.h"
#include "SerialStream.h"
#include "XmlNodes.h"

namespace torvan::slicer {
namespace {

constexpr int maxDepth = 50;
constexpr double maxCoordinate = 1e6;
constexpr double maxPortNumber = 1e6;
constexpr std::string_view labelSuffix = "#identifier";

struct PortTag {
  std::string_view tag;
  SignalKind kind;
  Direction direction;
};

constexpr std::array portTags{
    PortTag{"ExplicitInputPort", SignalKind::Data, Direction::In},
    PortTag{"ExplicitOutputPort", SignalKind::Data, Direction::Out},
    PortTag{"ControlPort", SignalKind::Event, Direction::In},
    PortTag{"CommandPort", SignalKind::Event, Direction::Out},
    PortTag{"ImplicitInputPort", SignalKind::Implicit, Direction::In},
    PortTag{"ImplicitOutputPort", SignalKind::Implicit, Direction::Out},
};

constexpr std::array boundaryTags{
    PortTag{"ExplicitInBlock", SignalKind::Data, Direction::In},
    PortTag{"ExplicitOutBlock", SignalKind::Data, Direction::Out},
    PortTag{"EventInBlock", SignalKind::Event, Direction::In},
    PortTag{"EventOutBlock", SignalKind::Event, Direction::Out},
    PortTag{"ImplicitInBlock", SignalKind::Implicit, Direction::In},
    PortTag{"ImplicitOutBlock", SignalKind::Implicit, Direction::Out},
};

constexpr std::array<std::string_view, 3> linkTags{"ExplicitLink", "CommandControlLink",
                                                   "ImplicitLink"};

const PortTag* findTag(const std::array<PortTag, 6>& tags, std::string_view name) {
  const auto found = std::find_if(tags.begin(), tags.end(),
                                  [&](const PortTag& entry) { return entry.tag == name; });
  return found == tags.end() ? nullptr : &*found;
}

bool isBlock(const pugi::xml_node& cell) {
  return cell.attribute("simulationFunctionType") && std::string_view(cell.name()) != "TextBlock";
}

bool isLink(const pugi::xml_node& cell) {
  return std::find(linkTags.begin(), linkTags.end(), cell.name()) != linkTags.end();
}

double coordinate(const pugi::xml_attribute& attribute) {
  const double value = attribute.as_double();
  return std::isfinite(value) ? std::clamp(value, -maxCoordinate, maxCoordinate) : 0;
}

Point pointOf(const pugi::xml_node& node) {
  return {coordinate(node.attribute("x")), coordinate(node.attribute("y"))};
}

Rectangle rectangleOf(const pugi::xml_node& node) {
  const Point corner = pointOf(node);
  return {corner.x, corner.y, std::abs(coordinate(node.attribute("width"))),
          std::abs(coordinate(node.attribute("height")))};
}

Orientation orientationOf(std::string_view style) {
  const auto value = [&](std::string_view key) {
    const std::size_t start = style.find(key);
    if (start == std::string_view::npos) return std::string_view();
    const std::string_view rest = style.substr(start + key.size());
    return rest.substr(0, rest.find(';'));
  };
  const std::string_view rotation = value("rotation=");
  int degrees = 0;
  std::from_chars(rotation.data(), rotation.data() + rotation.size(), degrees);
  return {(degrees / 90 % 4 + 4) % 4, value("mirror=") == "true", value("flip=") == "true"};
}

std::string kindOf(const pugi::xml_node& cell) {
  const std::string_view tag = cell.name();
  std::string given = cleanText(cell.attribute("interfaceFunctionName").value());
  std::replace(given.begin(), given.end(), '/', '_');  // as names of super-blocks end with it
  if (!given.empty()) return given;
  if (tag == "SuperBlock") return "SUPER_f";
  if (tag == "SplitBlock") return "SPLIT_f";
  return std::string(tag);
}

Port readPort(const pugi::xml_node& cell, const PortTag& tag) {
  Port port{tag.kind,
            tag.direction,
            cell.attribute("ordering").as_int(),
            std::max(0, cell.attribute("dataLines").as_int(1)),
            std::max(0, cell.attribute("dataColumns").as_int(1)),
            std::nullopt};
  if (const pugi::xml_node geometry = cell.child("mxGeometry")) {
    const Rectangle place = rectangleOf(geometry);
    port.centre = Point{place.x + place.width / 2, place.y + place.height / 2};
  }
  return port;
}

/// Reads one sheet and, through readBlock, the sheets inside it.
class SheetReader {
 public:
  SheetReader(const ParameterReader& parameters, std::string file, std::string path, int depth)
      : parameters_(parameters), file_(std::move(file)), path_(std::move(path)), depth_(depth) {
    if (depth > maxDepth) throw DiagramError(file_, "super-blocks are nested too deeply");
  }

  Diagram read(const pugi::xml_node& holder) {
    diagram_.title = holder.attribute("title").value();
    const pugi::xml_node root = holder.child("mxGraphModel").child("root");
    if (!root) throw DiagramError(file_, "holds no block diagram");
    for (const pugi::xml_node& cell : root)
      if (isBlock(cell)) readBlock(cell);
    for (const pugi::xml_node& cell : root) {
      if (const PortTag* tag = findTag(portTags, cell.name())) {
        addPort(cell, *tag);
      } else if (std::string_view(cell.name()) == "mxCell") {
        readLabel(cell);
      }
    }
    for (Block& block : diagram_.blocks) separatePorts(block);
    for (const pugi::xml_node& cell : root)
      if (isLink(cell)) readLink(cell);
    return std::move(diagram_);
  }

 private:
  void readBlock(const pugi::xml_node& cell) {
    Block block;
    block.id = cell.attribute("id").value();
    block.kind = kindOf(cell);
    block.name = block.kind + "#" + std::to_string(++countOfKind_[block.kind]);
    block.simulation = cell.attribute("simulationFunctionName").value();
    block.dependsOnU = cell.attribute("dependsOnU").as_int() == 1;
    block.isSplit = std::string_view(cell.name()) == "SplitBlock";
    block.geometry = rectangleOf(cell.child("mxGeometry"));
    block.orientation = orientationOf(cell.attribute("style").value());
    block.exprs = parameters_.read(cell, "exprs").texts;
    for (std::string& expression : block.exprs) boost::trim(expression);
    if (const PortTag* tag = findTag(boundaryTags, cell.name()))
      block.boundary = Boundary{tag->kind, tag->direction, boundaryNumber(cell, block)};
    readInner(cell, block);
    enter(blockIndex_, block.id, diagram_.blocks.size(), block.name);
    diagram_.blocks.push_back(std::move(block));
  }

  int boundaryNumber(const pugi::xml_node& cell, const Block& block) const {
    const Parameter number = parameters_.read(cell, "integerParameters");
    if (!number.numbers.empty() && std::abs(number.numbers[0]) <= maxPortNumber)
      return static_cast<int>(number.numbers[0]);
    int typed = 0;
    if (!block.exprs.empty()) {
      const std::string& text = block.exprs[0];
      std::from_chars(text.data(), text.data() + text.size(), typed);
    }
    return typed;
  }

  void readInner(const pugi::xml_node& cell, Block& block) {
    const pugi::xml_node child = childAs(cell, "child");
    if (child.child("mxGraphModel").child("root")) {
      SheetReader reader(parameters_, file_, path_ + block.name + "/", depth_ + 1);
      block.inner.push_back(reader.read(child));
      std::vector<std::string>& warnings = block.inner[0].warnings;
      std::move(warnings.begin(), warnings.end(), std::back_inserter(diagram_.warnings));
      warnings.clear();
    } else if (block.simulation == "csuper" || std::string_view(cell.name()) == "SuperBlock") {
      warn(block.name + ": its inner diagram is not in the file, taken as a single block");
    }
  }

  void addPort(const pugi::xml_node& cell, const PortTag& tag) {
    const std::string id = cell.attribute("id").value();
    const auto block = blockIndex_.find(cell.attribute("parent").value());
    if (block == blockIndex_.end()) return warn("port " + id + " belongs to no block");
    std::vector<Port>& ports = diagram_.blocks[block->second].ports;
    enter(portIndex_, id, PortIndex{block->second, ports.size()},
          "a port of " + diagram_.blocks[block->second].name);
    ports.push_back(readPort(cell, tag));
  }

  /// Has the first of an id stand for it.
  template <class Place>
  void enter(std::unordered_map<std::string, Place>& index, const std::string& id, Place place,
             const std::string& what) {
    if (id.empty()) return;  // nothing can lead there
    if (!index.emplace(id, place).second)
      warn(what + ": its id " + id + " is that of another one, which it stands for");
  }

  /// Gives what has the number of another port one of its own. Not in a split, where they do not
  /// count, nor in a super-block, whose ports meet what is inside by the numbers in the file.
  void separatePorts(Block& block) {
    if (block.isSplit || !block.inner.empty()) return;
    for (const PortTag& tag : portTags) {
      std::set<int> taken;
      std::vector<Port*> doubles;
      for (Port& port : block.ports)
        if (port.kind == tag.kind && port.direction == tag.direction &&
            !taken.insert(port.number).second)
          doubles.push_back(&port);
      int number = 0;
      for (Port* const port : doubles) {
        while (!taken.insert(++number).second) continue;
        warn(block.name + ": another " + std::string(tag.tag) + " has the number " +
             std::to_string(port->number) + " as well, taken as number " + std::to_string(number));
        port->number = number;
      }
    }
  }

  void readLabel(const pugi::xml_node& cell) {
    std::string_view id = cell.attribute("id").value();
    if (!id.ends_with(labelSuffix)) return;
    id.remove_suffix(labelSuffix.size());
    const auto block = blockIndex_.find(std::string(id));
    if (block == blockIndex_.end()) return;
    diagram_.blocks[block->second].label = plainText(cell.attribute("value").value());
  }

  void readLink(const pugi::xml_node& cell) {
    const std::string name = cell.name() + std::string(" ") + cell.attribute("id").value();
    const auto source = linkEnd(cell, "source");
    const auto target = linkEnd(cell, "target");
    if (!source || !target)
      return warn(name + " is not connected at its " + (source ? "target" : "source"));
    const SignalKind kind = kindAt(*source);
    if (kind != kindAt(*target)) return warn(name + " joins ports of different kinds");
    Link link{kind, *source, *target, {}};
    for (const pugi::xml_node& point : childAs(cell.child("mxGeometry"), "points"))
      link.points.push_back(pointOf(point));
    diagram_.links.push_back(std::move(link));
  }

  std::optional<PortIndex> linkEnd(const pugi::xml_node& cell, const char* end) const {
    const pugi::xml_attribute attribute = cell.attribute(end);
    const auto id = attribute ? attribute : childAs(cell, end).attribute("id");
    const auto found = portIndex_.find(id.value());
    return found == portIndex_.end() ? std::nullopt : std::optional(found->second);
  }

  SignalKind kindAt(const PortIndex& at) const {
    return diagram_.blocks[at.block].ports[at.port].kind;
  }

  void warn(const std::string& message) { diagram_.warnings.push_back(path_ + message); }

  const ParameterReader& parameters_;
  std::string file_;
  std::string path_;
  int depth_;
  Diagram diagram_;
  std::map<std::string, int> countOfKind_;
  std::unordered_map<std::string, std::size_t> blockIndex_;
  std::unordered_map<std::string, PortIndex> portIndex_;
};

}  // namespace

Diagram readDiagram(std::string_view bytes, const std::string& name) {
  std::string unpacked;
  std::vector<Parameter> table;
  if (looksLikeArchive(bytes)) {
    constexpr const char* tableName = "dictionary/dictionary.ser";
    const Archive archive(bytes, name);
    bytes = unpacked = archive.entry("content.xml");
    table = SerialStream(archive.entry(tableName), name + ": " + tableName).parameters();
  }
  pugi::xml_document document;
  const pugi::xml_parse_result result = document.load_buffer(bytes.data(), bytes.size());
  if (!result)
    throw DiagramError(name, std::string("damaged XML: ") + result.description() + " at byte " +
                                 std::to_string(result.offset));
  const ParameterReader parameters(std::move(table), name);
  return SheetReader(parameters, name, "", 0).read(document.document_element());
}

}  // namespace torvan::slicer
