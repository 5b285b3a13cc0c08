#include <algorithm>
#include <sstream>

#include "Drawing.h"
#include "Escape.h"
#include "Palette.h"

namespace torvan::slicer {
namespace {

class DotDrawing {
 public:
  DotDrawing(const Network& network, const Highlight& highlight)
      : network_(network), highlight_(highlight) {}

  std::string draw() {
    out_ << "digraph network {\n"
         << "  graph [rankdir=LR, labelloc=t, fontname=Helvetica, label=\""
         << escapeDot(highlight_.caption) << "\"];\n"
         << "  node [shape=box, style=\"rounded,filled\", fontname=Helvetica, fontsize=11];\n"
         << "  edge [arrowsize=0.7];\n";
    for (std::size_t leaf = 0; leaf < network_.leaves().size(); ++leaf) drawLeaf(leaf);
    for (std::size_t net = 0; net < network_.nets().size(); ++net) drawNet(net);
    out_ << "}\n";
    return out_.str();
  }

 private:
  void drawLeaf(std::size_t leaf) {
    const BlockColours& colours = leaf == highlight_.criterion ? criterionColours
                                  : isHighlighted(leaf)        ? sliceColours
                                                               : plainColours;
    out_ << "  n" << leaf << " [label=\"" << escapeDot(network_.leaves()[leaf].name)
         << "\", fillcolor=\"" << colours.fill << "\", color=\"" << colours.stroke
         << "\", fontcolor=\"" << colours.text << "\"];\n";
  }

  void drawNet(std::size_t index) {
    const Net& net = network_.nets()[index];
    if (net.kind == SignalKind::Implicit) return drawImplicitNet(index);
    const std::string style = net.kind == SignalKind::Event ? ", style=dashed" : "";
    const bool follows = highlight_.follows(net.kind);
    for (const LeafPortIndex& driver : net.drivers)
      for (const LeafPortIndex& reader : net.readers)
        out_ << "  n" << driver.leaf << " -> n" << reader.leaf << " ["
             << lineStyle(follows && isHighlighted(driver.leaf) && isHighlighted(reader.leaf))
             << style << "];\n";
  }

  /// An undirected coupling has no source: its lines meet in a point.
  void drawImplicitNet(std::size_t index) {
    const Net& net = network_.nets()[index];
    if (net.readers.size() < 2) return;
    const auto isLit = [this](const LeafPortIndex& port) { return isHighlighted(port.leaf); };
    const bool leads = std::count_if(net.readers.begin(), net.readers.end(), isLit) > 1;
    out_ << "  net" << index << " [shape=point];\n";
    for (const LeafPortIndex& port : net.readers)
      out_ << "  n" << port.leaf << " -> net" << index << " [" << lineStyle(leads && isLit(port))
           << ", dir=none];\n";
  }

  static std::string lineStyle(bool highlighted) {
    return highlighted ? std::string("penwidth=2, color=\"") + sliceLine + "\""
                       : std::string("color=\"") + plainLine + "\"";
  }

  bool isHighlighted(std::size_t leaf) const { return highlight_.leaves.contains(leaf); }

  const Network& network_;
  const Highlight& highlight_;
  std::ostringstream out_;
};

}  // namespace

std::string drawDot(const Network& network, const Highlight& highlight) {
  return DotDrawing(network, highlight).draw();
}

}  // namespace torvan::slicer
