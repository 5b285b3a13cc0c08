#include "Signals.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "DiagramReader.h"
#include "LeafNamed.h"
#include "SheetText.h"

namespace torvan::slicer {
namespace {

const std::string openSize = "dataLines=\"-1\"";

std::string openInput(const std::string& id, int number = 1) {
  return port("ExplicitInputPort", id, number, openSize);
}

std::string openOutput(const std::string& id) {
  return port("ExplicitOutputPort", id, 1, openSize);
}

std::string mux(const std::string& sizes) {
  return block("BasicBlock", "m", "MUX", inlineTexts({sizes})) + openInput("m.in1") +
         openInput("m.in2", 2) + openOutput("m.out1");
}

/// The elements of what a block sends, if they are followed apart.
std::size_t elementsOf(const std::string& cells, const std::string& leafName) {
  const Network network(readDiagram(sheet(cells), "test"));
  const Signals signals(network);
  const std::size_t leaf = leafNamed(network, leafName);
  const LeafPortIndex output{
      leaf, network.leaves()[leaf].findPort(SignalKind::Data, Direction::Out, 1).value()};
  return signals.isSplit(output) ? signals.size(output) : 0;
}

TEST(SignalsTest, FollowsAsManyElementsAsAnArrayHas) {
  using Case = std::pair<std::string, std::size_t>;
  for (const auto& [sizes, elements] :
       {Case{"[2;3]", 5}, Case{"[65534;1]", 65535}, Case{"[65535;1]", 0}, Case{"[40000;40000]", 0},
        Case{"[70000;1]", 0}, Case{"[9223372036854775807;9223372036854775807]", 0}})
    EXPECT_EQ(elementsOf(mux(sizes), "MUX#1"), elements) << sizes;
}

TEST(SignalsTest, ExtractorsSendTheElementsThatTheyName) {
  const auto routesOf = [](const std::string& indices) {
    const Network network(readDiagram(
        sheet(mux("[1;2]") + block("BasicBlock", "e", "EXTRACTOR", inlineTexts({indices})) +
              openInput("e.in1") + openOutput("e.out1") + link("m.out1", "e.in1")),
        "test"));
    const Signals signals(network);
    std::string text;
    for (const Route& route : signals.routes(leafNamed(network, "EXTRACTOR#1")))
      text += std::to_string(route.outputFirst) + '<' + std::to_string(route.inputFirst) + '*' +
              std::to_string(route.count) + ' ';
    return text;
  };
  EXPECT_EQ(routesOf("[3 1 2]"), "1<3*1 2<1*2 ");
  EXPECT_EQ(routesOf("[2 2]"), "1<2*1 2<2*1 ");
  EXPECT_EQ(routesOf("[4]"), "");
  EXPECT_EQ(routesOf("[0]"), "");
  EXPECT_EQ(routesOf("n"), "");
}

// Long enough to be noticed if each step took a look at all blocks.
TEST(SignalsTest, ElementsPassAlongChainsInAnyOrderOfTheFile) {
  constexpr int length = 10'000;
  const auto gain = [](int i) {
    const std::string id = "g" + std::to_string(i);
    return block("BasicBlock", id, "GAINBLK", inlineTexts({"2"})) + openInput(id + ".in1") +
           openOutput(id + ".out1");
  };
  std::string up, down, links = link("m.out1", "g1.in1");
  for (int i = 1; i <= length; ++i) {
    up += gain(i);
    down += gain(length + 1 - i);
    if (i < length)
      links += link("g" + std::to_string(i) + ".out1", "g" + std::to_string(i + 1) + ".in1");
  }
  const std::string last = "GAINBLK#" + std::to_string(length);
  EXPECT_EQ(elementsOf(mux("[1;2]") + up + links, last), 3U);
  EXPECT_EQ(elementsOf(down + mux("[1;2]") + links, "GAINBLK#1"), 3U);
}

}  // namespace
}  // namespace torvan::slicer
