#include "Network.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DiagramReader.h"
#include "LeafNamed.h"
#include "SheetText.h"

namespace torvan::slicer {
namespace {

Network networkOf(const std::string& cells) { return Network(readDiagram(sheet(cells), "test")); }

// Names of the leaves that drive a data input of a leaf, separated by blanks.
std::string driversOf(const Network& network, const std::string& leafName, int number = 1) {
  const Leaf& leaf = network.leaves()[leafNamed(network, leafName)];
  const std::size_t port = leaf.findPort(SignalKind::Data, Direction::In, number).value();
  std::string names;
  for (const LeafPortIndex& driver : network.nets().at(leaf.ports[port].net).drivers) {
    names += (names.empty() ? "" : " ") + network.leaves()[driver.leaf].name;
  }
  return names;
}

TEST(NetworkTest, SuperBlockPortsMeetInnerBlocksByNumber) {
  const std::string innermost = numbered("ExplicitInBlock", "i", 1) + sink("x") +
                                numbered("ExplicitInBlock", "j", 2) + sink("y") +
                                link("i.out1", "x.in1") + link("j.out1", "y.in1");
  // Both levels list their inputs in reverse order and reuse the block identifiers.
  const std::string middle = numbered("ExplicitInBlock", "j", 2) +
                             numbered("ExplicitInBlock", "i", 1) +
                             block("SuperBlock", "s", "", inner(innermost)) + input("s.in2", 2) +
                             input("s.in1") + link("i.out1", "s.in1") + link("j.out1", "s.in2");
  const Network network =
      networkOf(source("a", "FIRST") + source("b", "SECOND") +
                block("BasicBlock", "s", "MASK", inner(middle)) + input("s.in2", 2) +
                input("s.in1") + link("a.out1", "s.in1") + link("b.out1", "s.in2"));
  EXPECT_EQ(driversOf(network, "MASK#1/SUPER_f#1/CSCOPE#1"), "FIRST#1");
  EXPECT_EQ(driversOf(network, "MASK#1/SUPER_f#1/CSCOPE#2"), "SECOND#1");
  const Leaf& leaf = network.leaves()[leafNamed(network, "MASK#1/SUPER_f#1/CSCOPE#2")];
  EXPECT_EQ(leaf.path, (std::vector<std::size_t>{2, 2, 3}));
  leafNamed(networkOf(numbered("ExplicitInBlock", "i", 1)), "ExplicitInBlock#1");
}

// The sender sits in the outer super-block OUTER, receivers at the top, beside it and below it.
class TagTest : public testing::Test {
 protected:
  static Network withVisibility(const std::string& visibility, const std::string& scopeAtTop,
                                const std::string& scopeInOuter) {
    const std::string receiver =
        tagged("f", "FROM", "T") + output("f.out1") + sink("x") + link("f.out1", "x.in1");
    const std::string sender = source("a") + tagged("g", "GOTO", "T", visibility) + input("g.in1") +
                               link("a.out1", "g.in1");
    return networkOf(receiver + scopeAtTop +
                     block("BasicBlock", "s", "OUTER",
                           inner(sender + receiver + scopeInOuter +
                                 block("BasicBlock", "s", "BELOW", inner(receiver)))));
  }

  static std::vector<bool> reached(const Network& network) {
    return {!driversOf(network, "CSCOPE#1").empty(),
            !driversOf(network, "OUTER#1/CSCOPE#1").empty(),
            !driversOf(network, "OUTER#1/BELOW#1/CSCOPE#1").empty()};
  }

  const std::string scope_ = tagged("v", "GotoTagVisibility", "T");
  const std::string otherScope_ = tagged("v", "GotoTagVisibility", "other");
};

TEST_F(TagTest, VisibilityDecidesWhoReceives) {
  EXPECT_EQ(reached(withVisibility("1", "", "")), (std::vector<bool>{false, true, false}));
  EXPECT_EQ(reached(withVisibility("3", "", "")), (std::vector<bool>{true, true, true}));
  EXPECT_EQ(reached(withVisibility("2", "", scope_)), (std::vector<bool>{false, true, true}));
  EXPECT_EQ(reached(withVisibility("2", scope_, "")), (std::vector<bool>{true, true, true}));
  EXPECT_EQ(reached(withVisibility("2", otherScope_, scope_)),
            (std::vector<bool>{false, true, true}));
  const std::string ofEvents = tagged("v", "CLKGotoTagVisibility", "T");
  EXPECT_EQ(reached(withVisibility("2", ofEvents, "")), (std::vector<bool>{true, true, true}));
}

TEST(NetworkTest, TagsOfDataAndEventsDoNotMix) {
  const Network network = networkOf(
      source("a") + tagged("g", "GOTO", "T", "3") + input("g.in1") + link("a.out1", "g.in1") +
      tagged("f", "CLKFROM", "T") + port("CommandPort", "f.out1", 1) +
      block("BasicBlock", "x", "CSCOPE") + port("ControlPort", "x.event1", 1) +
      link("f.out1", "x.event1", "CommandControlLink"));
  EXPECT_EQ(network.nets().size(), 2U);
}

TEST(NetworkTest, EveryImplicitPortDrivesAndReads) {
  const Network network =
      networkOf(block("BasicBlock", "r", "Resistor") + port("ImplicitOutputPort", "r.out1", 1) +
                block("BasicBlock", "c", "Capacitor") + port("ImplicitInputPort", "c.in1", 1) +
                link("r.out1", "c.in1", "ImplicitLink"));
  ASSERT_EQ(network.nets().size(), 1U);
  EXPECT_EQ(network.nets()[0].drivers.size(), 2U);
  EXPECT_EQ(network.nets()[0].readers.size(), 2U);
}

}  // namespace
}  // namespace torvan::slicer
