#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class ArrayTest : public SessionTest {
 protected:
  Array array(const std::vector<std::uint16_t>& indices, const std::vector<LatticeValue>& parts) {
    return values.createArray(type, indices, parts);
  }
  static std::string indicesOf(const LatticeValue& value) {
    std::string indices;
    for (const auto& [index, child] : Array(value)->getValues())
      indices += std::to_string(index) + ' ';
    return indices;
  }

  PowerSetType p = sets(2);
  ArrayType type = types.createArrayType("A", p, 4);
  std::vector<LatticeValue> elements{set(p, {}), set(p, {1}), set(p, {2}), set(p, {1, 2})};
  Array full = array({1, 2, 3, 4}, elements);
};

TEST_F(ArrayTest, PartSharesValuesUnderANewAnonymousType) {
  EXPECT_TRUE(full.at(2) == elements[1] && full.at(2, 0) == elements[1]);
  EXPECT_TRUE(full.at(2, 2) == elements[1]);
  const Array part{full.at(2, 3)};
  EXPECT_EQ(indicesOf(part), "1 2 ");
  EXPECT_TRUE(part.at(1) == elements[1] && part.at(2) == elements[2]);
  const ArrayType partType{part->getType()};
  EXPECT_EQ(partType->getName(), "");
  EXPECT_EQ(partType->getNumElems(), 2);
  EXPECT_TRUE(partType->getElemType() == p);
  EXPECT_TRUE(Array{partType->getTop()}.at(2) == p->getTop());
  EXPECT_FALSE(full.at(2, 3)->getType() == partType);
  const Array all{full.at(1, 4)}, none{full.at(3, 2)};
  const Array untyped{values.createArray({}, {1}, {elements[1]}).at(3, 2)};
  EXPECT_FALSE(all == full || all->getType() == type);
  EXPECT_EQ(indicesOf(all) + indicesOf(none) + indicesOf(untyped), "1 2 3 4 ");
  EXPECT_EQ(ArrayType(none->getType())->getNumElems(), 0);
  EXPECT_FALSE(ArrayType(untyped->getType())->getElemType());
  EXPECT_TRUE(full.ref(3, 2).getLatticeValuePtrVec().empty());
}

TEST_F(ArrayTest, MissingIndexReadsTheBottomOfTheArrayType) {
  const Array sparse = array({1, 3, 9}, {elements[1], elements[2], elements[3]});
  EXPECT_TRUE(sparse.at(2) == type->getBottom() && sparse.at(0) == type->getBottom());
  EXPECT_TRUE(sparse.at(9) == elements[3]);
  const Array part{sparse.at(2, 3)};
  EXPECT_TRUE(part.at(1) == type->getBottom() && part.at(2) == elements[2]);
  EXPECT_TRUE(ArrayType(part->getType())->getElemType() == type);

  const Array clone{sparse.clone()};
  EXPECT_EQ(indicesOf(clone), "1 2 3 4 ");
  EXPECT_TRUE(clone.at(2).eq(type->getBottom()));
  EXPECT_FALSE(clone.at(2) == type->getBottom());
  EXPECT_TRUE(sparse.eq(clone) && clone.eq(sparse));
  EXPECT_EQ(sparse.le(array({1, 3}, {elements[3], elements[3]})), boolean3::T);
  EXPECT_RAISES(sparse.join(full), castFailure<Array>());
}

TEST_F(ArrayTest, BottomThatLacksTheIndexItselfIsAnError) {
  const Array bottom{type->getBottom()};
  bottom->getValues().erase(2);
  const Array sparse = array({1, 3, 4}, {elements[1], elements[1], elements[1]});
  EXPECT_RAISES(sparse.clone(), "InvalidValue");
  EXPECT_RAISES(bottom.join(bottom), "InvalidValue");
  EXPECT_RAISES(full.meet(sparse), "InvalidValue");
  EXPECT_RAISES(bottom.le(full), "InvalidValue");
  EXPECT_RAISES(bottom.eq(bottom), "InvalidValue");
  EXPECT_RAISES(sparse.ref(2, 3), "InvalidValue");
}

TEST_F(ArrayTest, RefStoresMissingIndices) {
  const Array sparse = array({2}, {elements[1]});
  LatticeValue* const third = sparse.ref(3).getLatticeValuePtr();
  EXPECT_EQ(third, sparse->getValues()[3].ref());
  EXPECT_TRUE(third->eq(type->getBottom()));
  EXPECT_FALSE(*third == type->getBottom());
  const auto slots = sparse.ref(1, 3).getLatticeValuePtrVec();
  ASSERT_EQ(slots.size(), 3U);
  EXPECT_EQ(slots[1], sparse->getValues()[2].ref());
  EXPECT_EQ(slots[2], third);
  EXPECT_EQ(indicesOf(sparse), "1 2 3 ");
  EXPECT_TRUE(full.ref(65535).deref().eq(type->getBottom()));  // stored, though never read
  EXPECT_TRUE(*slots[1] == elements[1]);
}

TEST_F(ArrayTest, LargestSizeEnds) {
  const ArrayType large = types.createArrayType("L", p, 65535);
  const Array top{large->getTop()}, bottom{large->getBottom()};
  const Array joined{bottom.join(top)};
  EXPECT_EQ(joined->getValues().size(), 65535U);
  EXPECT_TRUE(joined.eq(top));
  EXPECT_EQ(top.le(bottom), boolean3::F);
  EXPECT_TRUE(joined.at(65535).eq(p->getTop()));
  EXPECT_EQ(Array(top.at(1, 65535))->getValues().size(), 65535U);
  EXPECT_EQ(top.ref(2, 65535).getLatticeValuePtrVec().size(), 65534U);
}

TEST_F(ArrayTest, JoinsIntoAValueAsItJoins) {
  const ArrayType shorter = types.createArrayType("B", p, 2);
  const LatticeValue untyped = values.createArray({}, {1, 2, 3, 4}, elements);
  const LatticeValue both = values.createArray(shorter, {1, 2}, {elements[1], elements[1]});
  const LatticeValue low = values.createArray(shorter, {1, 2}, {elements[0], elements[0]});
  const LatticeValue one = array({1, 2, 3, 4}, std::vector<LatticeValue>(4, elements[0]));
  for (const auto& [left, right] :
       {std::pair{one, untyped}, {low, full}, {both, one}, {one, both}}) {
    LatticeValue joined, grown = left;
    bool isMore = false;
    const std::string refused = failureOf([&] { joined = left.join(right); });
    EXPECT_EQ(failureOf([&] { isMore = joinInto(grown, right); }), refused);
    if (refused == "none") {
      EXPECT_TRUE(grown.eq(joined) && isMore == !joined.eq(left));
    }
  }
}

}  // namespace
}  // namespace torvan::datamodel
