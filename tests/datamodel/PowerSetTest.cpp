#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class PowerSetTest : public SessionTest {
 protected:
  PowerSet bits(std::size_t length, std::initializer_list<std::size_t> elements) {
    return values.createPowerSet({}, bitsOf(length, elements));
  }
  static BitSet at(const PowerSet& set, std::uint16_t start, std::uint16_t end = 0) {
    return PowerSet(set.at(start, end))->getValue();
  }
  static BitSet valueOf(const LatticeValue& value) { return PowerSet(value)->getValue(); }
};

TEST_F(PowerSetTest, OperandsAreTakenAtTheLengthOfTheLeft) {
  const PowerSet wide = bits(130, {1, 3, 65, 130}), narrow = bits(2, {1, 2});
  EXPECT_EQ(valueOf(narrow.join(wide)), bitsOf(2, {1, 2}));
  EXPECT_EQ(valueOf(narrow.meet(wide)), bitsOf(2, {1}));
  EXPECT_EQ(valueOf(wide.join(narrow)), bitsOf(130, {1, 2, 3, 65, 130}));
  EXPECT_EQ(valueOf(wide.meet(narrow)), bitsOf(130, {1}));
  EXPECT_EQ(valueOf(bits(3, {}).join(wide)).count(), 2U);  // no bits beyond the length
  EXPECT_EQ(valueOf(bits(0, {}).join(wide)), BitSet());
}

TEST_F(PowerSetTest, MissingBitsReadAsZeroInTheOrder) {
  const PowerSet empty = bits(0, {}), one = bits(1, {1}), wide = bits(130, {1}),
                 more = bits(130, {1, 129});
  EXPECT_EQ(empty.le(empty), boolean3::T);
  EXPECT_EQ(empty.le(more), boolean3::T);
  EXPECT_EQ(more.le(empty), boolean3::F);
  EXPECT_EQ(bits(5, {}).le(empty), boolean3::T);
  EXPECT_EQ(one.le(wide), boolean3::T);
  EXPECT_EQ(wide.le(one), boolean3::T);
  EXPECT_EQ(more.le(one), boolean3::F);
  EXPECT_EQ(bits(2, {2}).le(more), boolean3::NA);
  EXPECT_TRUE(empty.eq(empty));
  EXPECT_FALSE(one.eq(wide) || wide.eq(one) || empty.eq(bits(5, {})));
}

TEST_F(PowerSetTest, RightOperandMustBeAPowerSet) {
  const PowerSet value = bits(1, {1});
  for (const LatticeValue& other : {LatticeValue(make<Struct>()), LatticeValue()}) {
    EXPECT_EQ(failureOf([&] { value.join(other); }), castFailure<PowerSet>());
    EXPECT_EQ(failureOf([&] { value.meet(other); }), castFailure<PowerSet>());
    EXPECT_EQ(failureOf([&] { value.le(other); }), castFailure<PowerSet>());
    EXPECT_EQ(failureOf([&] { value.eq(other); }), castFailure<PowerSet>());
  }
}

TEST_F(PowerSetTest, PartIsOfANewAnonymousType) {
  const PowerSet value = set(sets(4), {1, 3});
  const std::size_t before = model.size();
  const PowerSet part{value.at(2, 3)};
  EXPECT_EQ(part->getValue(), bitsOf(2, {2}));
  const LatticeType type = part->getType();
  EXPECT_TRUE(type->hasName() && type->getName().empty());
  EXPECT_EQ(type->getNumElems(), 2);
  EXPECT_EQ(valueOf(type->getTop()), bitsOf(2, {1, 2}));
  EXPECT_EQ(model.size(), before + 4);
  EXPECT_FALSE(value.at(2, 3)->getType() == type);
  EXPECT_EQ(at(value, 3), bitsOf(1, {1}));
  EXPECT_EQ(at(value, 4, 4), bitsOf(1, {}));
}

TEST_F(PowerSetTest, FullRangeOfATypedSetIsAClone) {
  const PowerSetType type = sets(70);
  const PowerSet value = set(type, {1, 70});
  const LatticeValue all = value.at(1, 70);
  EXPECT_TRUE(all->getType() == type && all.eq(value) && !(all == value));
  EXPECT_EQ(bits(3, {2}).at(1, 3)->getType()->getName(), "");
  type->setNumElems(5);  // the length of the bits decides
  EXPECT_TRUE(value.at(1, 70)->getType() == type);
  EXPECT_FALSE(value.at(1, 5)->getType() == type);
}

TEST_F(PowerSetTest, BadRangesReadZeros) {
  const PowerSet value = set(sets(4), {1, 2, 3, 4});
  EXPECT_EQ(at(value, 3, 6), bitsOf(4, {1, 2}));
  EXPECT_EQ(at(value, 4, 200), bitsOf(197, {1}));
  EXPECT_EQ(at(value, 65535, 65535), bitsOf(1, {}));
  EXPECT_EQ(at(value, 3, 2), BitSet());
  EXPECT_TRUE(at(value, 0).none() && at(value, 0, 2).none());
  EXPECT_EQ(at(values.createPowerSet({}, ~BitSet(65535)), 65534, 65535), bitsOf(2, {1, 2}));
}

}  // namespace
}  // namespace torvan::datamodel
