#include "DiagramReader.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <map>
#include <string>

#include "Archive.h"
#include "DiagramError.h"
#include "SerialBytes.h"
#include "SheetText.h"
#include "tests/support/Failure.h"

namespace torvan::slicer {
namespace {

const std::string kTable = "dictionary/dictionary.ser";

Diagram read(const std::string& bytes) { return readDiagram(bytes, "test"); }

std::string complainsAbout(const std::string& bytes) {
  return tests::textOfFailure<DiagramError>([&] { read(bytes); });
}

std::string pack(const std::map<std::string, std::string>& entries) {
  zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, nullptr);
  zip_source_keep(target);
  zip_t* archive = zip_open_from_source(target, ZIP_TRUNCATE, nullptr);
  for (const auto& [entryName, content] : entries) {
    zip_source_t* source = zip_source_buffer(archive, content.data(), content.size(), 0);
    zip_file_add(archive, entryName.c_str(), source, 0);
  }
  zip_close(archive);
  zip_source_open(target);
  zip_source_seek(target, 0, SEEK_END);
  std::string bytes(static_cast<std::size_t>(zip_source_tell(target)), '\0');
  zip_source_seek(target, 0, SEEK_SET);
  zip_source_read(target, bytes.data(), bytes.size());
  zip_source_close(target);
  zip_source_free(target);
  return bytes;
}

std::string exampleText() { return readFile(TORVAN_EXAMPLES_DIR "/room.xcos"); }

// Fifty cuts all over the file, none of which leaves it whole.
void expectEveryCutToFail(const std::string& whole) {
  for (std::size_t i = 0; i < 50; ++i)
    EXPECT_THROW(read(whole.substr(0, whole.size() * i / 50)), DiagramError) << i;
}

TEST(DiagramReaderTest, BothLinkEncodingsJoinTheSamePorts) {
  const std::string blocks = source("a") + source("b", "GAINBLK") + input("b.in1");
  const std::string repeated =
      "<ExplicitLink><mxCell as=\"parent\" id=\"sheet\"/>"
      "<ExplicitOutputPort as=\"source\" id=\"a.out1\"/>"
      "<ExplicitInputPort as=\"target\" id=\"b.in1\"/></ExplicitLink>";
  for (const std::string& encoding : {link("a.out1", "b.in1"), repeated}) {
    const Diagram diagram = read(sheet(encoding + blocks));
    ASSERT_EQ(diagram.links.size(), 1U);
    EXPECT_EQ(diagram.links[0].source.block, 0U);
    EXPECT_EQ(diagram.links[0].target.block, 1U);
    EXPECT_EQ(diagram.links[0].target.port, 1U);
    EXPECT_TRUE(diagram.warnings.empty());
  }
}

TEST(DiagramReaderTest, NamesBlocksByKindAndCount) {
  const Diagram diagram = read(sheet(
      block("BasicBlock", "a", "GAINBLK") + block("SuperBlock", "b", "", inner("")) +
      block("TextBlock", "c", "TEXT_f") + block("SplitBlock", "d", "") +
      block("SuperBlock", "e", "SUPER_f", inner("")) + block("BasicBlock", "g", "SUPER_f#1/G") +
      block("BasicBlock", "f", "GAINBLK") +
      "<mxCell id=\"f#identifier\" value=\"&lt;b&gt;a &amp;lt; b&lt;/b&gt;&lt;br&gt; fast\"/>"));
  std::vector<std::string> names;
  for (const Block& each : diagram.blocks) names.push_back(each.name);
  EXPECT_EQ(names, (std::vector<std::string>{"GAINBLK#1", "SUPER_f#1", "SPLIT_f#1", "SUPER_f#2",
                                             "SUPER_f#1_G#1", "GAINBLK#2"}));
  EXPECT_EQ(diagram.blocks.back().label, "a < b fast");
}

TEST(DiagramReaderTest, WarnsOfWhatIsMissing) {
  const std::string blocks = source("a") + input("a.in1") + port("ControlPort", "a.event", 1);
  const Diagram diagram =
      read(sheet(block("SuperBlock", "s", "", inner(blocks + link("a.out1", "nowhere"))) +
                 block("SuperBlock", "t", "") + blocks + "<ExplicitLink id=\"bare\"/>" +
                 link("a.out1", "a.event")));
  EXPECT_EQ(diagram.warnings,
            (std::vector<std::string>{
                "SUPER_f#1/ExplicitLink a.out1-nowhere is not connected at its target",
                "SUPER_f#2: its inner diagram is not in the file, taken as a single block",
                "ExplicitLink bare is not connected at its source",
                "ExplicitLink a.out1-a.event joins ports of different kinds"}));
  EXPECT_TRUE(diagram.links.empty());
}

TEST(DiagramReaderTest, TellsOfIdsThatAreNotUnique) {
  const Diagram diagram = read(sheet(source("a", "SRC") + block("BasicBlock", "a", "SRC") +
                                     output("a.out1", 2) + sink("b") + link("a.out1", "b.in1")));
  EXPECT_EQ(diagram.warnings,
            (std::vector<std::string>{
                "SRC#2: its id a is that of another one, which it stands for",
                "a port of SRC#1: its id a.out1 is that of another one, which it stands for"}));
  EXPECT_EQ(diagram.links.at(0).source.port, 0U);
}

TEST(DiagramReaderTest, TellsPortsOfOneNumberApart) {
  const std::string twins = output("a.x") + output("a.y") + input("a.z");
  const Diagram diagram = read(sheet(block("BasicBlock", "a", "SRC") + twins + output("a.last", 2) +
                                     block("SplitBlock", "s", "") + output("s.x") + output("s.y")));
  std::vector<int> numbers;
  for (const Block& each : diagram.blocks)
    for (const Port& port : each.ports) numbers.push_back(port.number);
  EXPECT_EQ(numbers, (std::vector{1, 3, 1, 2, 1, 1}));
  EXPECT_EQ(diagram.warnings,
            std::vector<std::string>{
                "SRC#1: another ExplicitOutputPort has the number 1 as well, taken as number 3"});
}

TEST(DiagramReaderTest, KeepsOpenPortSizesApartFromGivenOnes) {
  const std::string tag = "ExplicitInputPort";
  const Diagram diagram = read(sheet(block("BasicBlock", "a", "MUX") + port(tag, "a.in1", 1) +
                                     port(tag, "a.in2", 2, "dataLines=\"-1\" dataColumns=\"1\"") +
                                     port(tag, "a.in3", 3, "dataLines=\"3\"")));
  const std::vector<Port>& ports = diagram.blocks.at(0).ports;
  EXPECT_EQ(ports[0].rows, 1);
  EXPECT_EQ(ports[0].columns, 1);
  EXPECT_EQ(ports[1].rows, 0);
  EXPECT_EQ(ports[2].rows, 3);
}

TEST(DiagramReaderTest, TakesParametersFromTheTableOfAPackedFile) {
  const std::string table =
      stream(list(2, textColumn({"K*2", "0"}) + numberRow('I', 1, number(3, 4))));
  const auto withParameter = [&](const std::string& element) {
    return sheet(block("ExplicitInBlock", "a", "IN_f", element));
  };
  const std::string good = withParameter(
      "<TextString as=\"exprs\" binary=\"true\" position=\"0\"/>"
      "<Integers as=\"integerParameters\" binary=\"true\" position=\"1\"/>");
  const Diagram diagram = read(pack({{"content.xml", good}, {kTable, table}}));
  EXPECT_EQ(diagram.blocks.at(0).exprs, (std::vector<std::string>{"K*2", "0"}));
  EXPECT_EQ(diagram.blocks.at(0).boundary->number, 3);

  const std::string beyond =
      withParameter("<TextString as=\"exprs\" binary=\"true\" position=\"2\"/>");
  EXPECT_EQ(complainsAbout(pack({{"content.xml", beyond}, {kTable, table}})),
            "test: has no parameter number 2 in its table");
}

TEST(DiagramReaderTest, CutOffFilesAreReported) {
  expectEveryCutToFail(exampleText());
  const std::string packed = pack({{"content.xml", exampleText()}, {kTable, stream(list(0, ""))}});
  EXPECT_EQ(read(packed).blocks.size(), read(exampleText()).blocks.size());
  expectEveryCutToFail(packed);
}

TEST(DiagramReaderTest, SaysWhatIsWrongWithAFile) {
  EXPECT_EQ(complainsAbout("<Sheet/>"), "test: holds no block diagram");
  EXPECT_EQ(complainsAbout(pack({{"readme", "hello"}})), "test: has no content.xml");
  EXPECT_EQ(complainsAbout("PK but no more").find("test: not a zip archive"), 0U);
  EXPECT_EQ(complainsAbout("plain text").find("test: damaged XML"), 0U);
  EXPECT_THROW(readFile("/does/not/exist"), DiagramError);
  std::string nested;
  for (int i = 0; i < 1000; ++i) nested = block("SuperBlock", "s", "", inner(nested));
  EXPECT_EQ(complainsAbout(sheet(nested)), "test: super-blocks are nested too deeply");
}

}  // namespace
}  // namespace torvan::slicer
