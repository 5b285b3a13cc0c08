#include <set>

#include <orb/zero/Value.h>
#include <torvan/datamodel/ValueTypes.h>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using orb::zero::Multiplicity;
using orb::zero::Value;

class ValueTest : public SessionTest {
 protected:
  template <class T>
  static std::string castOf(const Value& value) {
    return failureOf([&] { value.getValue<T>(); });
  }
  template <class T>
  static void expectHeld(const T& held, std::string_view name, Multiplicity multiplicity) {
    const Value value(held);
    Value copy(value), moved(std::move(copy));
    copy = moved;
    moved = Value(true);
    EXPECT_TRUE(copy.getValue<T>() == held);
    EXPECT_TRUE(copy == value && copy.hash() == value.hash());
    EXPECT_EQ(value.type()->name, name);
    EXPECT_EQ(value.type()->multiplicity, multiplicity);
    EXPECT_FALSE(value == moved && name != "Boolean");
  }

  PowerSetType p = sets(3);
  PowerSet a = set(p, {1}), b = set(p, {2});
};

TEST_F(ValueTest, HoldsEveryTypeInEveryNumber) {
  expectHeld(std::uint16_t{65535}, "UInteger16", Multiplicity::One);
  expectHeld(-1, "Integer", Multiplicity::One);
  expectHeld(std::string(100, 'x'), "StdString", Multiplicity::One);
  expectHeld(std::string("x"), "StdString", Multiplicity::One);
  expectHeld(bitsOf(70, {1, 70}), "BitSet", Multiplicity::One);
  expectHeld(boolean3::NA, "torvan.datamodel.boolean3", Multiplicity::One);
  expectHeld(a.ref(1, 2), "Ref", Multiplicity::One);
  expectHeld(a, "orb.zero.ModelElement", Multiplicity::One);
  expectHeld(boost::optional<BitSet>(bitsOf(3, {1})), "BitSet", Multiplicity::Optional);
  expectHeld(boost::optional<PowerSet>(), "orb.zero.ModelElement", Multiplicity::Optional);
  expectHeld(std::vector<std::string>{"b", "a", "b"}, "StdString", Multiplicity::Sequence);
  expectHeld(std::vector<PowerSet>{a, {}, a}, "orb.zero.ModelElement", Multiplicity::Sequence);
  expectHeld(std::set<BitSet>{bitsOf(3, {1}), bitsOf(3, {})}, "BitSet", Multiplicity::Set);
  EXPECT_TRUE(Value().isEmpty() && Value() == Value() && !(Value() == Value(0)));
  EXPECT_EQ(Value().hash(), 0U);
}

TEST_F(ValueTest, WrongTypeIsRefusedByName) {
  const Value bits(bitsOf(3, {1}));
  EXPECT_EQ(castOf<std::string>(bits), "CannotCastIncompatibleTypes(StdString)");
  EXPECT_EQ(castOf<std::vector<BitSet>>(bits), "CannotCastIncompatibleTypes(BitSet)");
  EXPECT_EQ(castOf<boost::optional<boolean3>>(Value()),
            "CannotCastIncompatibleTypes(torvan.datamodel.boolean3)");
  EXPECT_EQ(castOf<LatticeValue>(bits), castFailure<LatticeValue>());
}

TEST_F(ValueTest, HandlesAreNarrowedAndCounted) {
  const std::uint32_t before = a.get()->outsideCount();
  {
    const Value value(a), sequence(std::vector<LatticeValue>{a, a});
    EXPECT_EQ(a.get()->outsideCount(), before + 3);
    EXPECT_TRUE(value.getValue<LatticeValue>() == a);
    EXPECT_EQ(castOf<Struct>(value), castFailure<Struct>());
    EXPECT_EQ(castOf<std::vector<Struct>>(sequence), castFailure<Struct>());
    EXPECT_TRUE(sequence.getValue<std::vector<PowerSet>>() == (std::vector{a, a}));
    EXPECT_TRUE(Value(LatticeValue(a)) == value);
    EXPECT_FALSE(Value(b) == value);
    EXPECT_FALSE(Value(Struct()).getValue<PowerSet>());
    const Value copy(sequence), slot(a->getType());  // a slot is stored as an outside handle
    EXPECT_EQ(a.get()->outsideCount(), before + 5);
    EXPECT_TRUE(slot.getValue<PowerSetType>() == p);
  }
  EXPECT_EQ(a.get()->outsideCount(), before);
}

TEST_F(ValueTest, HashesAreThoseOfTheFormulas) {
  constexpr std::uint64_t multiplier = 0xc6a4a7935bd1e995, addend = 0xe6546b64;
  EXPECT_EQ(Value(BitSet()).hash(), addend);
  const auto mixed = [](std::uint64_t word) {
    word *= multiplier;
    return (word ^ (word >> 47)) * multiplier;
  };
  const std::uint64_t one = mixed(1) * multiplier + addend;
  EXPECT_EQ(Value(bitsOf(3, {1})).hash(), (3 ^ mixed(one)) * multiplier + addend);
  EXPECT_NE(Value(bitsOf(4, {1})).hash(), Value(bitsOf(3, {1})).hash());

  EXPECT_EQ(Value(std::vector<boolean3>{}).hash(), 0U);
  EXPECT_EQ(Value(std::set{boolean3::T}).hash(), one);
  EXPECT_EQ(Value(std::vector{boolean3::T, boolean3::NA}).hash(),
            (one ^ mixed(3)) * multiplier + addend);

  EXPECT_EQ(Value(a.ref(1)).hash(), 0U);
  EXPECT_EQ(Value(boost::optional<int>()).hash(), 0U);
  EXPECT_FALSE(Value(boost::optional<int>(0)) == Value(boost::optional<int>()));
  EXPECT_FALSE(Value(boost::optional<int>(1)) == Value(1));
}

}  // namespace
}  // namespace torvan::datamodel
