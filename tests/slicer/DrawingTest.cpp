#include "Drawing.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>

#include <cmath>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "Archive.h"
#include "DiagramReader.h"
#include "LeafNamed.h"
#include "SheetText.h"

namespace torvan::slicer {
namespace {

struct Picture {
  Diagram diagram;
  Network network;
  Highlight highlight;

  explicit Picture(Diagram read) : diagram(std::move(read)), network(diagram) {}

  // The first name is the criterion.
  Picture& show(std::initializer_list<std::string> names) {
    highlight.criterion = leafNamed(network, *names.begin());
    for (const std::string& each : names) highlight.leaves.insert(leafNamed(network, each));
    return *this;
  }

  pugi::xml_document svg() const {
    pugi::xml_document document;
    const auto result = document.load_string(drawSvg(diagram, network, highlight).c_str());
    EXPECT_TRUE(result) << result.description();
    return document;
  }
};

Picture room() {
  return Picture(readDiagram(readFile(TORVAN_EXAMPLES_DIR "/room.xcos"), "room.xcos"));
}

std::size_t count(const pugi::xml_document& svg, const std::string& path) {
  return svg.select_nodes(path.c_str()).size();
}

std::vector<Point> pointsOf(const pugi::xml_node& polyline) {
  std::istringstream text(polyline.attribute("points").value());
  std::vector<Point> points;
  char comma = 0;
  for (Point point; text >> point.x >> comma >> point.y;) points.push_back(point);
  return points;
}

TEST(DrawingTest, DrawsEveryBlockAndStraightLines) {
  const auto svg = room().show({"CMSCOPE#1"}).svg();
  EXPECT_EQ(count(svg, "//g"), 13U);
  EXPECT_EQ(count(svg, "//circle"), 3U);
  EXPECT_EQ(count(svg, "//polyline"), 18U);
  EXPECT_EQ(count(svg, "//polyline[contains(@class, 'event')]"), 3U);
  for (const auto& match : svg.select_nodes("//polyline")) {
    const std::vector<Point> points = pointsOf(match.node());
    ASSERT_GE(points.size(), 2U);
    for (std::size_t i = 1; i < points.size(); ++i) {
      EXPECT_TRUE(std::abs(points[i].x - points[i - 1].x) < 1 ||
                  std::abs(points[i].y - points[i - 1].y) < 1);
    }
  }
}

TEST(DrawingTest, HighlightsTheWayBetweenHighlightedBlocks) {
  const auto svg = room().show({"SUPER_f#1/DEMUX#1", "MUX#1", "GENSIN_f#1"}).svg();
  // The super-block stands for the criterion inside it, drawn with a double edge.
  EXPECT_EQ(count(svg, "//g/rect[@class='criterion']"), 2U);
  EXPECT_EQ(count(svg, "//g/rect[@class='slice']"), 2U);
  // The source to the multiplexer and on to the room, but not the branch to the other one.
  EXPECT_EQ(count(svg, "//polyline[@class='slice']"), 3U);
  EXPECT_EQ(count(svg, "//circle[@class='slice']"), 1U);
}

TEST(DrawingTest, HighlightsTagsAndEventsOnlyWhereInfluencePasses) {
  Picture picture(readDiagram(
      sheet(source("a", "SRC") + output("a.out2", 2) + port("ControlPort", "a.event", 1) +
            block("BasicBlock", "c", "CLOCK") + port("CommandPort", "c.event", 1) +
            link("c.event", "a.event", "CommandControlLink") + tagged("g", "GOTO", "T", "1") +
            input("g.in1") + link("a.out1", "g.in1") + tagged("f", "FROM", "T") + output("f.out1") +
            sink("x") + link("f.out1", "x.in1") + tagged("h", "GOTO", "U", "1") + input("h.in1") +
            link("a.out2", "h.in1") + tagged("e", "FROM", "U") + output("e.out1") + sink("y") +
            link("e.out1", "y.in1")),
      "test"));
  const auto lit = [&] { return count(picture.svg(), "//polyline[starts-with(@class, 'slice')]"); };
  picture.show({"CSCOPE#1", "SRC#1", "CLOCK#1"});
  EXPECT_EQ(lit(), 3U);  // the source to one tag, that to the scope, and the event
  picture.highlight.withEvents = false;
  EXPECT_EQ(lit(), 2U);
}

/// One that passes a signal on, and one where only what is not in the slice reads it.
TEST(DrawingTest, HighlightsSuperBlocksByTheirPorts) {
  const std::string passing = numbered("ExplicitInBlock", "i", 1) +
                              numbered("ExplicitOutBlock", "o", 1) + link("i.out1", "o.in1");
  const std::string mixed = numbered("ExplicitInBlock", "j", 1) + sink("t", "TRASH_f") +
                            link("j.out1", "t.in1") + source("k") +
                            numbered("ExplicitOutBlock", "p", 1) + link("k.out1", "p.in1");
  const auto super = [](const std::string& id, const std::string& cells) {
    return block("SuperBlock", id, "SUPER_f", inner(cells)) + input(id + ".in1") +
           output(id + ".out1");
  };
  Picture picture(readDiagram(
      sheet(source("a", "SRC") + super("s", passing) + block("SplitBlock", "d", "SPLIT_f") +
            input("d.in1") + output("d.out1") + output("d.out2", 2) + sink("x", "SUMMATION") +
            input("x.in2", 2) + super("m", mixed) + link("a.out1", "s.in1") +
            link("s.out1", "d.in1") + link("d.out1", "x.in1") + link("d.out2", "m.in1") +
            link("m.out1", "x.in2")),
      "test"));
  const auto svg = picture.show({"SUMMATION#1", "SRC#1", "SUPER_f#2/CONST_m#1"}).svg();
  EXPECT_EQ(count(svg, "//polyline[starts-with(@class, 'slice')]"), 4U);
  EXPECT_EQ(count(svg, "//polyline[@class='plain']"), 1U);
}

/// Two ports of a super-block with the same signal, of which the slice reads one, tags that could
/// lead in a circle, and a super-block that only passes signals on, all to nothing in the slice.
TEST(DrawingTest, HighlightsNoWayThatEndsOutside) {
  const std::string cells =
      source("a", "SRC") + block("SplitBlock", "d", "SPLIT_f") + input("d.in1") + output("d.out1") +
      output("d.out2", 2) + output("d.out3", 3) + output("d.out4", 4) + link("a.out1", "d.in1") +
      block("SuperBlock", "s", "SUPER_f",
            inner(numbered("ExplicitInBlock", "i", 1) + sink("x", "SINKA") +
                  link("i.out1", "x.in1") + numbered("ExplicitInBlock", "j", 2) +
                  sink("y", "SINKB") + link("j.out1", "y.in1"))) +
      input("s.in1") + input("s.in2", 2) + link("d.out1", "s.in1") + link("d.out2", "s.in2") +
      tagged("g", "GOTO", "T", "1") + input("g.in1") + link("d.out3", "g.in1") +
      tagged("h", "GOTO", "T", "1") + input("h.in1") + tagged("e", "FROM", "T") + output("e.out1") +
      tagged("f", "FROM", "T") + output("f.out1") + sink("t", "SINKT") + link("f.out1", "t.in1") +
      block("SuperBlock", "p", "SUPER_f",
            inner(numbered("ExplicitInBlock", "k", 1) + numbered("ExplicitOutBlock", "o", 1) +
                  link("k.out1", "o.in1"))) +
      input("p.in1") + output("p.out1") + link("d.out4", "p.in1") + sink("u", "SINKU") +
      link("p.out1", "u.in1");
  Picture picture(readDiagram(sheet(cells), "test"));
  const auto svg = picture.show({"SUPER_f#1/SINKA#1", "SRC#1"}).svg();
  EXPECT_EQ(count(svg, "//polyline[@class='slice']"), 2U);
  EXPECT_EQ(count(svg, "//polyline[@class='plain']"), 5U);
  EXPECT_EQ(count(svg, "//g/rect[@class='slice']"), 1U) << "the source";
}

TEST(DrawingTest, ArrowsPointAtReadersOfBackwardLinks) {
  Picture picture(readDiagram(sheet(source("a") + sink("b") + link("b.in1", "a.out1")), "test"));
  const auto svg = picture.show({"CSCOPE#1", "CONST_m#1"}).svg();
  EXPECT_EQ(count(svg, "//polyline[@marker-start='url(#arrow-slice)']"), 1U);
  EXPECT_EQ(count(svg, "//polyline[@marker-end]"), 0U);
}

TEST(DrawingTest, EscapesText) {
  Picture picture(
      readDiagram(sheet(block("BasicBlock", "a", "A&lt;&quot;\\B&gt;"), "x &amp; y"), "test"));
  picture.show({"A<\"\\B>#1"}).highlight.caption = "a < \"b\"\n& c\xE9";
  const auto svg = picture.svg();
  EXPECT_EQ(count(svg, "//text[.='x & y']"), 1U);
  EXPECT_EQ(count(svg, "//text[.='a < \"b\" & c\uFFFD']"), 1U);
  const std::string dot = drawDot(picture.network, picture.highlight);
  EXPECT_NE(dot.find("label=\"a < \\\"b\\\" & c\uFFFD\""), std::string::npos);
  EXPECT_NE(dot.find(R"(label="A<\"\\B>#1")"), std::string::npos);
}

TEST(DrawingTest, GraphHoldsTheFlattenedNetwork) {
  const Picture picture = room().show({"MUX#1", "GENSIN_f#1"});
  const std::string dot = drawDot(picture.network, picture.highlight);
  const auto node = [&](const std::string& leafName) {
    return "n" + std::to_string(leafNamed(picture.network, leafName));
  };
  EXPECT_NE(dot.find(node("GENSIN_f#1") + " -> " + node("MUX#1") + " [penwidth=2"),
            std::string::npos);
  EXPECT_NE(dot.find(node("SUPER_f#1/INTEGRAL_m#1") + " -> " + node("SUMMATION#1") + " [color"),
            std::string::npos);
  const std::size_t event = dot.find(node("SampleCLK#1") + " -> " + node("CMSCOPE#1"));
  ASSERT_NE(event, std::string::npos);
  EXPECT_NE(dot.substr(event, dot.find('\n', event) - event).find("dashed"), std::string::npos);
}

}  // namespace
}  // namespace torvan::slicer
