#include <torvan/datamodel/JoinInto.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using JoinIntoTest = SessionTest;

TEST_F(JoinIntoTest, changesOnlyASetThatTheHandleAloneHolds) {
  const PowerSetType type = sets(4);
  const PowerSet more = set(type, {2});
  LatticeValue value = set(type, {1});
  const auto* const element = value.get();
  EXPECT_TRUE(joinInto(value, more));
  EXPECT_FALSE(joinInto(value, more));
  EXPECT_EQ(value.get(), element);
  EXPECT_EQ(
      PowerSet { value } -> getValue(), bitsOf(4, {1, 2}));

  const LatticeValue before = value;
  EXPECT_TRUE(joinInto(value, set(type, {4})));
  EXPECT_EQ(
      PowerSet { before } -> getValue(), bitsOf(4, {1, 2}));
  EXPECT_EQ(
      PowerSet { value } -> getValue(), bitsOf(4, {1, 2, 4}));
  EXPECT_FALSE(joinInto(value, set(sets(8), {8}))) << "beyond its length";
}

TEST_F(JoinIntoTest, sharesAllThatResultsWhereAllowed) {
  const PowerSetType type = sets(4);
  const PowerSet small = set(type, {1}), large = set(type, {1, 2});
  LatticeValue value = small, other = small;
  EXPECT_TRUE(joinInto(value, large, Sharing::Allowed));
  EXPECT_EQ(value, large);
  EXPECT_FALSE(joinInto(value, small, Sharing::Allowed));
  EXPECT_EQ(value, large);
  EXPECT_TRUE(joinInto(value, set(type, {3}), Sharing::Allowed));
  EXPECT_EQ(large->getValue(), bitsOf(4, {1, 2}));
  EXPECT_EQ(
      PowerSet { value } -> getValue(), bitsOf(4, {1, 2, 3}));

  const PowerSet foreign = set(sets(4), {1, 2});
  EXPECT_TRUE(joinInto(other, foreign, Sharing::Allowed));
  EXPECT_EQ(other->getType(), type);
  EXPECT_EQ(small->getValue(), bitsOf(4, {1}));
}

TEST_F(JoinIntoTest, isTakenBackWithItsTransaction) {
  const PowerSetType type = sets(300);
  LatticeValue value = set(type, {1});
  {
    const Transaction transaction(model);
    EXPECT_TRUE(joinInto(value, set(type, {300})));
  }
  EXPECT_EQ(
      PowerSet { value } -> getValue(), bitsOf(300, {1}));
}

}  // namespace
}  // namespace torvan::datamodel
