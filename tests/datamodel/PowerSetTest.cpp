#include "tests/datamodel/SessionTest.h"

#include <initializer_list>
#include <random>
#include <span>
#include <utility>

namespace torvan::datamodel {
namespace {

class PowerSetTest : public SessionTest {
 protected:
  static BitSet at(const PowerSet& set, std::uint16_t start, std::uint16_t end = 0) {
    return PowerSet(set.at(start, end))->getValue();
  }
  static BitSet valueOf(const LatticeValue& value) { return PowerSet(value)->getValue(); }
};

TEST_F(PowerSetTest, RightOperandMustBeAPowerSet) {
  const PowerSet value = bits(1, {1});
  for (const LatticeValue& other : {LatticeValue(make<Struct>()), LatticeValue()}) {
    EXPECT_RAISES(value.join(other), castFailure<PowerSet>());
    EXPECT_RAISES(value.meet(other), castFailure<PowerSet>());
    EXPECT_RAISES(value.le(other), castFailure<PowerSet>());
    EXPECT_RAISES(value.eq(other), castFailure<PowerSet>());
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

/// Whatever the lengths, and whether a set was given, is a result, or was asked for its bits. A
/// result has the length of the left one; bits that one of them lacks read as zero.
TEST_F(PowerSetTest, BitsOfEveryFormAreComputedAlike) {
  std::mt19937_64 random(1);
  const auto resized = [](BitSet bits, std::size_t size) { return bits.resize(size), bits; };
  BitSet dense(4096), sparse(4096);
  for (std::size_t bit = 0; bit < 4096; ++bit) {
    dense[bit] = random() % 2 == 0;
    sparse[bit] = random() % 64 == 0;
  }
  std::vector<std::pair<LatticeValue, BitSet>> sets;
  for (const std::size_t size : {0U, 1U, 64U, 200U, 256U, 257U, 320U, 1000U, 4096U})
    for (const BitSet& all :
         {dense, sparse, BitSet(dense | sparse), BitSet(dense & sparse), BitSet()}) {
      const BitSet each = resized(all, size);
      const LatticeValue given = values.createPowerSet({}, each), asked = given.clone();
      EXPECT_EQ(valueOf(asked), each);
      sets.insert(sets.end(), {{given, each}, {given.join(given), each}, {asked, each}});
    }
  for (const auto& [a, left] : sets)
    for (const auto& [b, right] : sets) {
      const BitSet fitted = resized(right, left.size());
      EXPECT_EQ(valueOf(a.join(b)), left | fitted);
      EXPECT_EQ(valueOf(a.meet(b)), left & fitted);
      EXPECT_EQ(a.eq(b), left == right);
      const BitSet x = resized(left, 4096), y = resized(right, 4096);
      EXPECT_EQ(a.le(b), x.is_subset_of(y)   ? boolean3::T
                         : y.is_subset_of(x) ? boolean3::F
                                             : boolean3::NA);
    }
}

/// At every place where loops over words begin anew.
TEST_F(PowerSetTest, SingleDifferencesDecideTheOrder) {
  for (const std::size_t size : {200U, 257U, 1024U, 1345U, 2100U}) {
    const PowerSet whole = values.createPowerSet({}, ~BitSet(size));
    const auto without = [&](std::size_t bit) {
      return values.createPowerSet({}, (~BitSet(size)).reset(bit));
    };
    for (std::size_t bit = 0; bit < size; bit += bit % 64 == 0 ? 63 : 1) {
      const PowerSet less = without(bit);
      EXPECT_EQ(less.le(whole), boolean3::T) << bit << " of " << size;
      EXPECT_EQ(whole.le(less), boolean3::F) << bit << " of " << size;
      EXPECT_FALSE(less.eq(whole)) << bit << " of " << size;
      for (const std::size_t other : {std::size_t{0}, size / 2, size - 1})
        EXPECT_EQ(less.le(without(other)), other == bit ? boolean3::T : boolean3::NA)
            << bit << " and " << other << " of " << size;
    }
  }
}

TEST_F(PowerSetTest, ResultsThatEqualAnOperandAreSetsOfTheirOwn) {
  const BitSet bits = ~BitSet(1000), other = ~bits;
  const PowerSet value = values.createPowerSet({}, bits), clone{value.clone()},
                 joined{clone.join(value)};
  PowerSetRef(joined.ref(1, 1000).getPowerSetRef()).assign(values.createPowerSet({}, other));
  clone->setValue(BitSet(3));
  EXPECT_EQ(valueOf(value), bits);
  EXPECT_EQ(valueOf(joined), other);
  const BitSet* const address = &clone->getValue();
  {
    const Transaction undone(model);
    clone->setValue(bits);
    EXPECT_EQ(address, &clone->getValue());
  }
  EXPECT_EQ(*address, BitSet(3));
}

TEST_F(PowerSetTest, JoinIntoChangesOnlyASetThatTheHandleAloneHolds) {
  const PowerSetType type = sets(300);
  const PowerSet more = set(type, {2});
  LatticeValue value = set(type, {1}).clone();
  const auto* const element = value.get();
  EXPECT_TRUE(joinInto(value, more));
  EXPECT_FALSE(joinInto(value, more));
  EXPECT_EQ(value.get(), element);
  EXPECT_EQ(valueOf(value), bitsOf(300, {1, 2}));
  {
    const Transaction undone(model);
    EXPECT_TRUE(joinInto(value, set(type, {300})));
    const Transaction inner(model);
    EXPECT_TRUE(joinInto(value, set(type, {3})));
    EXPECT_TRUE(joinInto(value, set(type, {4})));
    EXPECT_EQ(value.get(), element);
  }
  EXPECT_EQ(valueOf(value), bitsOf(300, {1, 2}));

  const LatticeValue before = value;
  EXPECT_TRUE(joinInto(value, set(type, {4})));
  EXPECT_EQ(valueOf(before), bitsOf(300, {1, 2}));
  EXPECT_EQ(valueOf(value), bitsOf(300, {1, 2, 4}));
  EXPECT_FALSE(joinInto(value, set(sets(400), {400}))) << "beyond its length";
}

TEST_F(PowerSetTest, JoinIntoSharesAllThatResultsWhereAllowed) {
  const PowerSetType type = sets(4);
  const PowerSet small = set(type, {1}), large = set(type, {1, 2});
  LatticeValue value = small, other = small;
  EXPECT_TRUE(joinInto(value, large, Sharing::Allowed));
  EXPECT_EQ(value, large);
  EXPECT_FALSE(joinInto(value, small, Sharing::Allowed));
  EXPECT_EQ(value, large);
  EXPECT_TRUE(joinInto(value, set(type, {3}), Sharing::Allowed));
  EXPECT_EQ(valueOf(large), bitsOf(4, {1, 2}));
  EXPECT_EQ(valueOf(value), bitsOf(4, {1, 2, 3}));

  const PowerSet foreign = set(sets(4), {1, 2});
  EXPECT_TRUE(joinInto(other, foreign, Sharing::Allowed));
  EXPECT_EQ(other->getType(), type);
  EXPECT_EQ(valueOf(small), bitsOf(4, {1}));

  const PowerSet longer = make<PowerSet>();
  longer->setType(type);
  longer->setValue(bitsOf(6, {1, 5}));
  other = small;
  EXPECT_TRUE(small.le(longer) == boolean3::T);
  EXPECT_FALSE(joinInto(other, longer, Sharing::Allowed)) << "no more within its length";
  longer->setValue(bitsOf(6, {1, 2, 5}));
  EXPECT_TRUE(joinInto(other, longer, Sharing::Allowed));
  EXPECT_EQ(valueOf(other), bitsOf(4, {1, 2}));
}

TEST_F(PowerSetTest, JoinIntoSharesNothingOfAnotherModel) {
  for (const std::size_t size : {4, 300}) {
    Session other;
    const LatticeValue foreign =
        other.valueFactory()->createPowerSet({}, bitsOf(size, {1, 2}));  // of no type, as the own
    const LatticeValue* const others[] = {&foreign};
    const LatticeValue own = bits(size, {1});
    LatticeValue one = own, all = own;
    EXPECT_TRUE(joinInto(one, foreign, Sharing::Allowed));
    EXPECT_TRUE(joinAllInto(all, others, Sharing::Allowed));
    EXPECT_TRUE(one->getModel() == model && all->getModel() == model);
  }
}

TEST_F(PowerSetTest, JoinAllIntoDoesWhatJoiningOneByOneDoes) {
  for (const std::uint16_t size : std::initializer_list<std::uint16_t>{60, 200, 300}) {
    const PowerSetType type = sets(size);
    const LatticeValue one = set(type, {1}), two = set(type, {2}), both = set(type, {1, 2}),
                       none = set(type, {}), longer = set(sets(400), {3, 400});
    const LatticeValue* const all[] = {&one, &two, &longer};
    const std::span<const LatticeValue* const> others(all, 2);
    LatticeValue value = none;
    EXPECT_TRUE(joinAllInto(value, others, Sharing::Allowed));
    EXPECT_EQ(valueOf(value), bitsOf(size, {1, 2}));
    EXPECT_EQ(valueOf(none), bitsOf(size, {}));
    EXPECT_FALSE(joinAllInto(value, others));
    const auto* const element = value.get();
    {
      const LatticeValue three = set(type, {3});
      const LatticeValue* const alike[] = {&three, &one};
      const Transaction undone(model);
      EXPECT_TRUE(joinAllInto(value, alike));
      EXPECT_EQ(valueOf(value), bitsOf(size, {1, 2, 3}));
    }
    EXPECT_EQ(valueOf(value), bitsOf(size, {1, 2}));
    EXPECT_TRUE(joinAllInto(value, all));
    EXPECT_EQ(value.get(), element) << "held alone";
    EXPECT_EQ(valueOf(value), bitsOf(size, {1, 2, 3}));

    const LatticeValue* const largest[] = {&one, &both, &two};
    LatticeValue shared = none, own = none;
    EXPECT_TRUE(joinAllInto(shared, largest, Sharing::Allowed));
    EXPECT_EQ(shared, both);
    EXPECT_TRUE(joinAllInto(own, largest));
    EXPECT_NE(own, both);
    EXPECT_TRUE(own.eq(both));
    EXPECT_FALSE(joinAllInto(own, {}));
  }
}

TEST_F(PowerSetTest, JoinIntoRaisesWhatJoinDoes) {
  const LatticeValue set = sets(1)->getTop(),
                     record = types.createStructType("S", {}, {})->getTop();
  LatticeValue value = record;
  EXPECT_RAISES(joinInto(value, {}), castFailure<Struct>());
  EXPECT_RAISES(joinInto(value, set), castFailure<Struct>());
  value = set;
  EXPECT_RAISES(joinInto(value, record), castFailure<PowerSet>());
  LatticeValue bottom = sets(1)->getBottom().clone();
  const LatticeValue* const others[] = {&set, &record};
  EXPECT_RAISES(joinAllInto(bottom, others), castFailure<PowerSet>());
  EXPECT_TRUE(bottom.eq(set)) << "what came before has been joined";
}

}  // namespace
}  // namespace torvan::datamodel
