#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class RefTest : public SessionTest {
 protected:
  Array array(const std::vector<LatticeValue>& elements) {
    std::vector<std::uint16_t> indices;
    for (std::size_t i = 1; i <= elements.size(); ++i)
      indices.push_back(static_cast<std::uint16_t>(i));
    return values.createArray({}, indices, elements);
  }

  PowerSetType p = sets(4);
  LatticeValue a = set(p, {1}), b = set(p, {2}), c = set(p, {3});
  LatticeValue slots[3];
  std::vector<LatticeValue*> places{&slots[0], &slots[1], &slots[2]};
};

TEST_F(RefTest, BitsAreOverwrittenWithinTheRange) {
  const PowerSet target = bits(10, {1, 4, 10});
  Ref range = target.ref(3, 5);
  range.assign(bits(3, {1, 3}));
  EXPECT_EQ(target->getValue(), bitsOf(10, {1, 3, 5, 10}));
  range.assign(bits(7, {2, 4, 5, 6, 7}));  // only its first bits count
  EXPECT_EQ(target->getValue(), bitsOf(10, {1, 4, 10}));
  EXPECT_RAISES(range.assign(array({})), castFailure<PowerSet>());

  const PowerSet itself = bits(6, {1, 2, 4});
  itself.ref(3, 6).assign(itself);
  EXPECT_EQ(itself->getValue(), bitsOf(6, {1, 2, 3, 4, 6}));
}

TEST_F(RefTest, BitRangesStayInsideTheSet) {
  const PowerSet target = bits(4, {2});
  const PowerSet ones = values.createPowerSet({}, ~BitSet(300));
  for (const auto& [start, end] : std::vector<std::pair<std::uint16_t, std::uint16_t>>{
           {3, 0}, {3, 2}, {0, 4}, {0, 65535}, {5, 9}, {65535, 65535}})
    target.ref(start, end).assign(ones);
  EXPECT_EQ(target->getValue(), bitsOf(4, {2}));
  target.ref(4, 300).assign(ones);
  EXPECT_EQ(target->getValue(), bitsOf(4, {2, 4}));
  EXPECT_EQ(PowerSet(target.ref(4, 0).deref())->getValue(), bitsOf(1, {1}));

  const std::size_t before = model.size();
  model.setHistoryLimit(1);
  target.ref(1, 2).deref();
  model.undo();
  EXPECT_EQ(model.size(), before) << "read as one step";
}

TEST_F(RefTest, BitRangeNarrowsBySixteenBitArithmetic) {
  const PowerSet target = bits(10, {});
  const PowerSetRef range = target.ref(4, 9).getPowerSetRef();
  EXPECT_EQ(range.ref(2, 3), target.ref(5, 6).getPowerSetRef());
  EXPECT_EQ(range.ref(2, 30), target.ref(5, 33).getPowerSetRef());
  EXPECT_EQ(range.ref(65535, 0), target.ref(2, 3).getPowerSetRef());
  Ref wide = target.ref(4, 9);
  EXPECT_EQ(wide.ref(2, 3, {}), target.ref(5, 6));
  Ref fields = wide.ref("f", a);
  EXPECT_EQ(fields.getLatticeValuePtr(), nullptr);
  EXPECT_FALSE(fields.deref());
}

TEST_F(RefTest, SlotSharesWhatIsWritten) {
  Ref ref(&slots[0]);
  EXPECT_FALSE(ref.deref());
  EXPECT_RAISES(ref.eq(a), castFailure<LatticeValue>());
  ref.assign(a);
  EXPECT_TRUE(slots[0] == a && ref.deref() == a);
  EXPECT_TRUE(ref.eq(set(p, {1})));
  EXPECT_FALSE(ref.eq(b));
  ref.assign({});
  EXPECT_FALSE(slots[0]);

  const FieldElem owner = field("f");
  Ref(owner.ref()).assign(b);
  EXPECT_TRUE(owner->getValue() == b && owner.ref()->isSlot());
}

TEST_F(RefTest, SlotNarrowsToItsParts) {
  const StructType type = types.createStructType("S", {"f"}, {p});
  Ref ref(&slots[0]);
  const Ref part = ref.ref("f", type->getBottom());
  const Struct made{slots[0]};
  EXPECT_TRUE(made.eq(type->getBottom()));
  EXPECT_FALSE(made == type->getBottom());
  EXPECT_EQ(part.getLatticeValuePtr(), made->getValues()["f"].ref());
  EXPECT_TRUE(ref.ref("f", a) == part && slots[0] == made);  // what is there stays
  EXPECT_RAISES(ref.ref(1, 1, a), castFailure<IndexableValue>());

  Ref second(&slots[1]);
  const Ref bitsOfSecond = second.ref(2, 3, a);
  EXPECT_EQ(bitsOfSecond, PowerSet{slots[1]}.ref(2, 3));
  EXPECT_TRUE(slots[1].eq(a));
  EXPECT_RAISES(second.ref("f", {}), castFailure<Struct>());
}

TEST_F(RefTest, SlotsTakeTheElementsOfAnArray) {
  Ref ref(places);
  EXPECT_FALSE(ref.deref());
  ref.assign(values.createArray({}, {9, 2, 4}, {c, a, b}));
  EXPECT_TRUE(slots[0] == a && slots[1] == b && slots[2] == c);
  EXPECT_TRUE(ref.eq(array({set(p, {1}), b, c})));
  EXPECT_FALSE(ref.eq(array({a, c, c})));
  slots[2] = {};
  EXPECT_FALSE(ref.eq(array({b, b, c})));  // a false result asks no further
  EXPECT_RAISES(ref.assign(a), castFailure<Array>());
}

TEST_F(RefTest, SlotsAndElementsOfOtherNumber) {
#ifdef NDEBUG
  Ref ref(places);
  ref.assign(array({a, b}));
  EXPECT_TRUE(slots[1] == b && !slots[2]);
  ref.assign(array({c, c, c, c}));
  EXPECT_TRUE(slots[2] == c && ref.eq(array({c})) && ref.eq(array({})));
#else
  EXPECT_DEATH(Ref(places).assign(array({a, b})), "");
#endif
}

TEST_F(RefTest, UpdateOffersEveryPlace) {
  std::vector<LatticeValue> offered;
  const auto step = [&](Ref& place, const LatticeValue& value) {
    offered.push_back(value);
    if (offered.size() == 1) place.assign(value);
    return offered.size() == 1;
  };
  EXPECT_TRUE(Ref(places).update(array({a, b, c}), step));
  EXPECT_EQ(offered, (std::vector{a, b, c}));
  EXPECT_TRUE(slots[0] == a && !slots[1]);
  EXPECT_FALSE(Ref(places).update(array({a, b, c}), step));
  Ref none(std::vector<LatticeValue*>{});
  EXPECT_TRUE(!none.update(array({}), step) && none.eq(array({})));
  EXPECT_EQ(offered.size(), 6U);
}

TEST_F(RefTest, SlotsNarrowToARangeOfThem) {
  Ref ref(places);
  EXPECT_EQ(ref.ref(2, 0, a).getLatticeValuePtr(), places[1]);
  EXPECT_EQ(ref.ref(3, 3, a).getLatticeValuePtr(), places[2]);
  EXPECT_EQ(ref.ref(2, 3, a).getLatticeValuePtrVec(), (std::vector{places[1], places[2]}));
  EXPECT_FALSE(slots[1]);  // the prototype is for what is narrowed inside of a slot
  EXPECT_FALSE(ref.ref(4, 0, a).deref() || ref.ref(0, 2, a).deref());
}

TEST_F(RefTest, SlotsNarrowToTheirFields) {
  const StructType type = types.createStructType("S", {"f"}, {p});
  Ref ref(places);
  slots[1] = a;
  EXPECT_RAISES(ref.ref("f", type->getBottom()), castFailure<Struct>());
  EXPECT_EQ(ref, Ref(places));
  slots[1] = type->getTop().clone();
  const Ref fields = ref.ref("f", type->getBottom());
  EXPECT_EQ(ref, fields);
  const auto narrowed = fields.getLatticeValuePtrVec();
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ(narrowed.at(i), Struct(slots[i])->getValues()["f"].ref());
  EXPECT_TRUE(slots[0].eq(slots[2]) && !(slots[0] == slots[2]));  // each has a clone of its own
  EXPECT_TRUE(narrowed[1]->eq(p->getTop()));
}

TEST_F(RefTest, NullPlaceIsNeverWritten) {
  Ref null(static_cast<LatticeValue*>(nullptr)), some({nullptr, &slots[0]});
  null.assign(a);
  EXPECT_FALSE(null.deref() || null.ref("f", a).deref() || null.ref(1, 2, a).deref());
  some.assign(array({a, b}));
  EXPECT_TRUE(slots[0] == b);
}

TEST_F(RefTest, OtherAlternativeEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(Ref(&slots[0]).getPowerSetRef(), "");
  EXPECT_DEATH(Ref(&slots[0]).getLatticeValuePtrVec(), "");
  EXPECT_DEATH(Ref(places).getLatticeValuePtr(), "");
}

}  // namespace
}  // namespace torvan::datamodel
