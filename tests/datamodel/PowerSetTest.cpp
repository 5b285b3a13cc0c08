#include "tests/datamodel/SessionTest.h"

#include <random>
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
    LatticeValue alone = bits(1, {}), shared = alone;
    const LatticeValue* const others[] = {&value, &other};
    EXPECT_RAISES(joinInto(shared, other), castFailure<PowerSet>());
    shared = {};
    EXPECT_RAISES(joinAllInto(alone, others), castFailure<PowerSet>());
    EXPECT_TRUE(alone.eq(value)) << "what came before has been joined";
  }
  LatticeValue proxy = PowerSet::createProxy(model, model.newUuid());
  EXPECT_RAISES(joinInto(proxy, value), "CannotModifyProxy");
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
  Session foreign;
  std::vector<std::pair<LatticeValue, BitSet>> sets;
  for (const std::size_t size : {0U, 1U, 64U, 200U, 256U, 257U, 320U, 1000U, 4096U})
    for (const BitSet& all :
         {dense, sparse, BitSet(dense | sparse), BitSet(dense & sparse), BitSet()}) {
      const BitSet each = resized(all, size);
      const LatticeValue given = values.createPowerSet({}, each), asked = given.clone();
      EXPECT_EQ(valueOf(asked), each);
      sets.insert(sets.end(), {{given, each}, {given.join(given), each}, {asked, each}});
      if (size <= 256) sets.emplace_back(foreign.valueFactory()->createPowerSet({}, each), each);
    }
  for (const auto& [a, left] : sets)
    for (const auto& [b, right] : sets) {
      const BitSet fitted = resized(right, left.size());
      EXPECT_EQ(valueOf(a.join(b)), left | fitted);
      EXPECT_EQ(valueOf(a.meet(b)), left & fitted);
      const LatticeValue* const others[] = {&b, &a};
      LatticeValue shared = a, all = a, alone = a.clone();
      const bool isMore = (left | fitted) != left;
      EXPECT_EQ(joinInto(shared, b, Sharing::Allowed), isMore);
      EXPECT_EQ(joinAllInto(all, others, Sharing::Allowed), isMore);
      EXPECT_EQ(joinAllInto(alone, others), isMore);
      EXPECT_TRUE(shared.eq(a.join(b)) && all.eq(shared) && alone.eq(shared));
      if (isMore && left.size() == right.size() && left.is_subset_of(right)) {
        EXPECT_EQ(shared == b, a->getModel() == b->getModel());
        EXPECT_EQ(all == b, shared == b);
      }
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

}  // namespace
}  // namespace torvan::datamodel
