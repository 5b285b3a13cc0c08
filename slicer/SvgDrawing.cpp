#include <algorithm>
#include <array>
#include <cmath>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Drawing.h"
#include "Escape.h"
#include "LinkHighlight.h"
#include "LinkRoute.h"
#include "Palette.h"

namespace torvan::slicer {
namespace {

constexpr double pixelsPerUnit = 2;
constexpr double margin = 30;
constexpr double legendHeight = 50;
constexpr double minWidth = 420;
constexpr double splitRadius = 2.5;
constexpr double largestFont = 9;
constexpr double smallestFont = 4.5;
constexpr double labelFont = 7;
constexpr double titleFont = 13;
constexpr double captionFont = 8.5;
constexpr double swatchFont = 8;
constexpr double glyphWidth = 0.66;  // of the font size, on average

enum class Standing { Plain, Slice, Criterion };

const char* className(Standing standing) {
  return standing == Standing::Criterion ? "criterion"
         : standing == Standing::Slice   ? "slice"
                                         : "plain";
}

/// Counts characters, not bytes, of UTF-8 text.
double textWidth(std::string_view text, double font) {
  const auto characters = std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  });
  return static_cast<double>(characters) * glyphWidth * font;
}

std::ostream& operator<<(std::ostream& out, const Point& point) {
  const auto round = [](double value) { return std::round(value * 10) / 10; };
  return out << round(point.x) << ',' << round(point.y);
}

class SvgDrawing {
 public:
  SvgDrawing(const Diagram& diagram, const Network& network, const Highlight& highlight)
      : diagram_(diagram),
        network_(network),
        highlight_(highlight),
        standings_(diagram.blocks.size(), Standing::Plain) {
    for (const std::size_t leaf : highlight.leaves) standingOf(leaf) = Standing::Slice;
    standingOf(highlight.criterion) = Standing::Criterion;
    for (const Link& link : diagram.links) routes_.push_back(routeLink(diagram, link));
    lightLinks();
  }

  std::string draw() {
    openPicture();
    drawLegend();
    drawLinks();
    for (std::size_t block = 0; block < diagram_.blocks.size(); ++block)
      drawBlock(diagram_.blocks[block], standings_[block]);
    out_ << "</svg>\n";
    return out_.str();
  }

 private:
  Standing& standingOf(std::size_t leaf) {
    return standings_[network_.leaves()[leaf].path.front()];
  }

  /// Finds the links to highlight, and with them the blocks they pass on the way.
  void lightLinks() {
    isLit_ = highlightedLinks(diagram_, highlight_);
    for (std::size_t link = 0; link < isLit_.size(); ++link) {
      if (!isLit_[link]) continue;
      for (const PortIndex& end : {diagram_.links[link].source, diagram_.links[link].target}) {
        Standing& standing = standings_[end.block];
        if (standing == Standing::Plain) standing = Standing::Slice;
      }
    }
  }

  Rectangle bounds() const {
    std::vector<Point> points;
    for (const Block& block : diagram_.blocks) {
      const Rectangle& box = block.geometry;
      points.push_back({box.x, box.y});
      points.push_back({box.x + box.width, box.y + box.height});
      const double middle = box.x + box.width / 2, half = textWidth(block.label, labelFont) / 2;
      points.push_back({std::min(box.x, middle - half), box.y});
      points.push_back({std::max(box.x, middle + half), box.y});
    }
    for (const auto& route : routes_) points.insert(points.end(), route.begin(), route.end());
    Point low = points.empty() ? Point() : points.front();
    Point high = low;
    for (const Point& point : points) {
      low = {std::min(low.x, point.x), std::min(low.y, point.y)};
      high = {std::max(high.x, point.x), std::max(high.y, point.y)};
    }
    return {low.x, low.y, high.x - low.x, high.y - low.y};
  }

  void openPicture() {
    const Rectangle box = bounds();
    corner_ = {box.x - margin, box.y - margin - legendHeight};
    const double width = std::max({box.width + 2 * margin, minWidth, legendWidth()});
    const double height = box.height + 2 * margin + legendHeight;
    out_ << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width * pixelsPerUnit
         << "\" height=\"" << height * pixelsPerUnit << "\" viewBox=\"" << corner_.x << ' '
         << corner_.y << ' ' << width << ' ' << height << "\">\n";
    writeStyle();
    out_ << "<rect x=\"" << corner_.x << "\" y=\"" << corner_.y << "\" width=\"" << width
         << "\" height=\"" << height << "\" fill=\"white\"/>\n";
  }

  void writeStyle() {
    out_ << "<style>\n"
         << "text { font-family: Helvetica, Arial, sans-serif; text-anchor: middle; }\n"
         << "text.start { text-anchor: start; fill: #1c1917; }\n"
         << "text.label { font-style: italic; fill: #475569; }\n"
         << "polyline { fill: none; stroke-linejoin: round; }\n"
         << "polyline.event { stroke-dasharray: 4 3; }\n";
    writeColours("plain", plainColours, plainLine, 1);
    writeColours("slice", sliceColours, sliceLine, 1.6);
    writeColours("criterion", criterionColours, sliceLine, 2.2);
    out_ << "</style>\n<defs>\n";
    writeArrow("plain", plainLine);
    writeArrow("slice", sliceLine);
    out_ << "</defs>\n";
  }

  void writeColours(std::string_view name, const BlockColours& block, std::string_view line,
                    double lineWidth) {
    out_ << "rect." << name << " { fill: " << block.fill << "; stroke: " << block.stroke
         << "; stroke-width: " << lineWidth << "; }\n"
         << "text." << name << " { fill: " << block.text << "; }\n"
         << "polyline." << name << " { stroke: " << line << "; stroke-width: " << lineWidth
         << "; }\n"
         << "circle." << name << " { fill: " << line << "; }\n";
  }

  void writeArrow(std::string_view name, std::string_view colour) {
    out_ << "<marker id=\"arrow-" << name << "\" viewBox=\"0 0 10 10\" refX=\"9\" refY=\"5\" "
         << "markerUnits=\"userSpaceOnUse\" markerWidth=\"7\" markerHeight=\"7\" "
         << "orient=\"auto-start-reverse\"><path d=\"M0,1 L10,5 L0,9 z\" fill=\"" << colour
         << "\"/></marker>\n";
  }

  std::string title() const { return diagram_.title.empty() ? "Block diagram" : diagram_.title; }

  /// What the colours mean.
  std::array<std::pair<Standing, std::string>, 3> swatches() const {
    const std::size_t inSlice = highlight_.leaves.size();
    const std::size_t outside = network_.leaves().size() - inSlice;
    return {{{Standing::Criterion, "criterion " + criterion().name},
             {Standing::Slice, "in the slice: " + std::to_string(inSlice)},
             {Standing::Plain, "not in the slice: " + std::to_string(outside)}}};
  }
  static double swatchWidth(const std::string& text) { return 30 + textWidth(text, swatchFont); }

  double legendWidth() const {
    double row = 0;
    for (const auto& [standing, text] : swatches()) row += swatchWidth(text);
    return 24 + std::max({textWidth(title(), titleFont), textWidth(highlight_.caption, captionFont),
                          row});
  }

  void drawLegend() {
    const double x = corner_.x + 12, y = corner_.y + 38;
    writeText("start", {x, corner_.y + 18}, titleFont, title());
    writeText("start", {x, corner_.y + 31}, captionFont, highlight_.caption);
    double next = x;
    for (const auto& [standing, text] : swatches()) {
      writeBox({next, y, 14, 9}, 2, standing);
      writeText("start", {next + 18, y + 7.5}, swatchFont, text);
      next += swatchWidth(text);
    }
  }

  const Leaf& criterion() const { return network_.leaves()[highlight_.criterion]; }

  void drawLinks() {
    for (const bool lit : {false, true})
      for (std::size_t link = 0; link < isLit_.size(); ++link)
        if (isLit_[link] == lit) drawLink(diagram_.links[link], routes_[link], lit);
  }

  void drawLink(const Link& link, const std::vector<Point>& route, bool lit) {
    const std::string name = className(lit ? Standing::Slice : Standing::Plain);
    out_ << "<polyline class=\"" << name << (link.kind == SignalKind::Event ? " event" : "")
         << "\" points=\"";
    for (const Point& point : route) out_ << point << ' ';
    out_ << '"';
    if (needsArrow(link.source)) out_ << " marker-start=\"url(#arrow-" << name << ")\"";
    if (needsArrow(link.target)) out_ << " marker-end=\"url(#arrow-" << name << ")\"";
    out_ << "/>\n";
  }

  bool needsArrow(const PortIndex& end) const {
    const Block& block = diagram_.blocks[end.block];
    const Port& port = block.ports[end.port];
    return !block.isSplit && port.kind != SignalKind::Implicit && port.direction == Direction::In;
  }

  void drawBlock(const Block& block, Standing standing) {
    const Rectangle& box = block.geometry;
    if (block.isSplit) {
      out_ << "<circle class=\"" << className(standing) << "\" cx=\"" << box.x + box.width / 2
           << "\" cy=\"" << box.y + box.height / 2 << "\" r=\"" << splitRadius << "\"/>\n";
      return;
    }
    out_ << "<g><title>" << escapeXml(block.name + ' ' + block.label) << "</title>\n";
    writeBox(box, 4, standing);
    if (!block.inner.empty())
      writeBox({box.x + 2.5, box.y + 2.5, box.width - 5, box.height - 5}, 2.5, standing);
    writeName(block, standing);
    if (!block.label.empty())
      writeText("label", {box.x + box.width / 2, box.y + box.height + labelFont + 2}, labelFont,
                block.label);
    out_ << "</g>\n";
  }

  /// Kind above number or tag, as large as the block allows.
  void writeName(const Block& block, Standing standing) {
    const Rectangle& box = block.geometry;
    const double room = std::max(box.width - (block.inner.empty() ? 4 : 8), 1.0);
    const double fitting = largestFont * room / textWidth(block.kind, largestFont);
    const double font = std::clamp(std::min(fitting, box.height / 3), smallestFont, largestFont);
    const Point middle{box.x + box.width / 2, box.y + box.height / 2};
    const bool hasTag = isTag(block) && !block.exprs.empty();
    const std::string detail = hasTag ? block.exprs[0] : block.name.substr(block.kind.size());
    writeText(className(standing), {middle.x, middle.y - 0.1 * font}, font, block.kind);
    writeText(className(standing), {middle.x, middle.y + font}, font, detail);
  }

  void writeBox(const Rectangle& box, double radius, Standing standing) {
    out_ << "<rect class=\"" << className(standing) << "\" x=\"" << box.x << "\" y=\"" << box.y
         << "\" width=\"" << std::max(box.width, 0.0) << "\" height=\"" << std::max(box.height, 0.0)
         << "\" rx=\"" << radius << "\"/>\n";
  }

  void writeText(std::string_view name, const Point& at, double font, std::string_view text) {
    out_ << "<text class=\"" << name << "\" x=\"" << at.x << "\" y=\"" << at.y << "\" font-size=\""
         << font << "\">" << escapeXml(text) << "</text>\n";
  }

  static bool isTag(const Block& block) {
    return block.kind.ends_with("GOTO") || block.kind.ends_with("FROM");
  }

  const Diagram& diagram_;
  const Network& network_;
  const Highlight& highlight_;
  std::vector<Standing> standings_;         // per block of the diagram
  std::vector<std::vector<Point>> routes_;  // per link
  std::vector<bool> isLit_;                 // per link
  Point corner_;
  std::ostringstream out_;
};

}  // namespace

std::string drawSvg(const Diagram& diagram, const Network& network, const Highlight& highlight) {
  return SvgDrawing(diagram, network, highlight).draw();
}

}  // namespace torvan::slicer
