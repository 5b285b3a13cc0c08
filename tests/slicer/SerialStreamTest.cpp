#include "SerialStream.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

#include "DiagramError.h"
#include "SerialBytes.h"
#include "tests/support/Failure.h"

namespace torvan::slicer {
namespace {

std::vector<Parameter> parse(const std::string& bytes) {
  return SerialStream(bytes, "table").parameters();
}

std::string complainsAbout(const std::string& bytes) {
  return tests::textOfFailure<DiagramError>([&] { parse(bytes); });
}

std::string doubleBytes(double value) { return number(std::bit_cast<std::uint64_t>(value), 8); }

TEST(SerialStreamTest, ReadsMatricesAndLists) {
  const auto table = parse(stream(
      list(5, textColumn({"[1;1]", "0"}) + numberRow('D', 2, doubleBytes(0.5) + doubleBytes(-2)) +
                  numberRow('S', 1, "\xFF\xFE") + numberRow('D', 0, "") +
                  list(2, textColumn({"x"}) + textColumn({"y", "z"})))));
  ASSERT_EQ(table.size(), 5U);
  EXPECT_EQ(table[0].texts, (std::vector<std::string>{"[1;1]", "0"}));
  EXPECT_EQ(table[1].numbers, (std::vector<double>{0.5, -2}));
  EXPECT_EQ(table[2].numbers, (std::vector<double>{-2}));
  EXPECT_TRUE(table[3].numbers.empty());
  EXPECT_EQ(table[4].texts, (std::vector<std::string>{"x", "y", "z"}));
}

TEST(SerialStreamTest, FollowsReferences) {
  // Handles: 0 list class, 1 list, 2 matrix class, 3 matrix.
  const auto table = parse(stream(list(2, textColumn({"tag"}) + reference(3))));
  ASSERT_EQ(table.size(), 2U);
  EXPECT_EQ(table[1].texts, table[0].texts);
}

TEST(SerialStreamTest, EveryCutIsReported) {
  const std::string whole =
      stream(list(2, textColumn({"a", "b"}) + numberRow('I', 1, number(7, 4))));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::string message = complainsAbout(whole.substr(0, length));
    EXPECT_NE(message.find("table: damaged at byte "), std::string::npos) << length << message;
  }
}

TEST(SerialStreamTest, RefusesHostileStreams) {
  const auto hugeArray = stream(array("[[D", 0x7FFFFFFF, ""));
  EXPECT_NE(complainsAbout(hugeArray).find("array size within"), std::string::npos);

  const auto selfContaining = stream(list(1, reference(1)));
  EXPECT_NE(complainsAbout(selfContaining).find("less deep nesting"), std::string::npos);

  const auto ownBase = stream("\x73" + classDescription("Loop", 2, reference(0)));
  EXPECT_NE(complainsAbout(ownBase).find("less deep nesting"), std::string::npos);

  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "\x73" + classDescription("ValueList");
  EXPECT_NE(complainsAbout(stream(deep)).find("less deep nesting"), std::string::npos);

  EXPECT_NE(complainsAbout(stream(list(1, reference(9)))).find("read before"), std::string::npos);
}

TEST(SerialStreamTest, RefusesSharedListsThatMultiply) {
  // Each list holds the one before it twice: 2^40 elements in a few hundred bytes.
  std::string nested = list(0, "");
  for (std::uint32_t i = 1; i <= 40; ++i) {
    // Handles of the k-th opened list: class 2k, object 2k + 1; the text after it comes later.
    nested = list(2, nested + reference(2 * (41 - i) + 1));
  }
  EXPECT_NE(complainsAbout(stream(nested)).find("fewer values"), std::string::npos);
}

}  // namespace
}  // namespace torvan::slicer
