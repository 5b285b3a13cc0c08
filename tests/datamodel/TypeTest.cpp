#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using TypeTest = SessionTest;

TEST_F(TypeTest, PowerSetTypeHasBounds) {
  const PowerSetType type = types.createPowerSetType("P", {"a", "b", "a"});
  EXPECT_EQ(type->getName(), "P");
  EXPECT_EQ(type->getNumElems(), 3);
  EXPECT_EQ(std::vector<std::string>(type->getUniverse().begin(), type->getUniverse().end()),
            (std::vector<std::string>{"a", "b", "a"}));
  EXPECT_EQ(PowerSet(type->getTop())->getValue(), bitsOf(3, {1, 2, 3}));
  EXPECT_EQ(PowerSet(type->getBottom())->getValue(), bitsOf(3, {}));
  EXPECT_TRUE(type->getTop()->getType() == type && type->getBottom()->getType() == type);
  EXPECT_EQ(model.size(), 3U);
  EXPECT_FALSE(sets(0)->hasUniverse());
  const std::vector<std::string> tooMany(65537, "x");
  EXPECT_EQ(types.createPowerSetType("P", tooMany)->getNumElems(), 1);
}

TEST_F(TypeTest, RecordsAndArraysShareTheBoundsOfTheirParts) {
  const PowerSetType a = sets(2), b = sets(3);
  const StructType record = types.createStructType("S", {"y", "x"}, {a, b});
  EXPECT_EQ(record->getNumElems(), 1);
  EXPECT_TRUE(record.at("x") == b && record.at("y") == a && !record.at("z"));
  EXPECT_EQ(record->getFields().begin()->first, "x");
  EXPECT_TRUE(Struct{record->getTop()}.at("x") == b->getTop());
  EXPECT_TRUE(Struct{record->getBottom()}.at("y") == a->getBottom());

  const ArrayType array = types.createArrayType("A", a, 3);
  const Array top{array->getTop()};
  EXPECT_TRUE(array->getNumElems() == 3 && array->getElemType() == a);
  EXPECT_EQ(top->getValues().size(), 3U);
  for (std::uint16_t i = 1; i <= 3; ++i) EXPECT_TRUE(top.at(i) == a->getTop());
  EXPECT_TRUE(Array{array->getBottom()}.at(2) == a->getBottom());
}

TEST_F(TypeTest, RefusalsLeaveWhatWasMadeBefore) {
  Session foreign;
  const auto alien = foreign.typeFactory()->createPowerSetType("P", 1);
  const PowerSetType type = sets(1);
  const auto made = [&] {  // fields of the struct type that was made last
    StructType last;
    for (const ModelElement element : model.elements(StructType::metaClass()))
      last = StructType(element);
    return last->hasTop() ? 0 : last->getFields().size();
  };
  const std::vector<std::string> two{"a", "b"}, twice{"a", "b", "a"}, same{"a", "a"};
  const std::vector<LatticeType> mixed{type, alien}, three{type, type, type};
  const std::vector<LatticeValue> own{type->getTop(), {}}, foreignToo{{}, alien->getTop()};
  const std::vector<std::uint16_t> indices{1, 2};
  const std::string otherModel = "CannotCreateCrossModelAssociation";
  EXPECT_RAISES(types.createStructType("S", two, mixed), otherModel);
  EXPECT_EQ(made(), 1U);
  EXPECT_RAISES(types.createStructType("S", twice, three), "UniquenessConstraint");
  EXPECT_EQ(made(), 2U);
  EXPECT_RAISES(types.createArrayType("A", alien, 2), otherModel);

  const std::size_t before = model.size();
  EXPECT_RAISES(values.createStruct({}, same, own), "UniquenessConstraint");
  EXPECT_RAISES(values.createArray({}, indices, foreignToo), otherModel);
  EXPECT_RAISES(values.createStruct({}, same, foreignToo), otherModel);  // asked before the key
  EXPECT_EQ(model.size(), before + 6);
}

TEST_F(TypeTest, UnequalVectorsAreNeverReadPastTheirEnd) {
#ifdef NDEBUG
  const PowerSetType type = sets(1);
  EXPECT_EQ(types.createStructType("S", {"a", "b"}, {type})->getFields().size(), 1U);
  EXPECT_EQ(values.createStruct({}, {"a"}, {{}, {}})->getValues().size(), 1U);
  EXPECT_EQ(values.createArray({}, {1, 2, 3}, {{}})->getValues().size(), 1U);
#else
  EXPECT_DEATH(types.createStructType("S", {"a"}, {}), "");
  EXPECT_DEATH(values.createArray({}, {1}, {}), "");
#endif
}

TEST_F(TypeTest, CompatibilityComparesKindAndShape) {
  const LatticeType p3 = sets(3), q3 = types.createPowerSetType("Q", {"a", "b", "c"}), p4 = sets(4);
  const auto array = [&](const LatticeType& elem, std::uint16_t size) {
    return types.createArrayType("A", elem, size);
  };
  const ArrayType p3s = array(p3, 2), none = array({}, 2);
  EXPECT_TRUE(p3.isCompatible(p3) && p3.isCompatible(q3));
  EXPECT_TRUE(p3s.isCompatible(array(q3, 2)) && none.isCompatible(array({}, 2)));
  EXPECT_FALSE(p3.isCompatible(p4) || p3.isCompatible({}) || p3.isCompatible(array(p3, 3)));
  EXPECT_FALSE(p3s.isCompatible(p3) || p3s.isCompatible(array(p3, 3)));
  EXPECT_FALSE(p3s.isCompatible(array(p4, 2)) || p3s.isCompatible(none) || none.isCompatible(p3s));
}

TEST_F(TypeTest, StructCompatibilityLooksAtCommonFieldsAlone) {
  const LatticeType p3 = sets(3), p4 = sets(4);
  const auto record = [&](const std::vector<std::string>& names,
                          const std::vector<LatticeType>& fields) {
    return types.createStructType("S", names, fields);
  };
  const StructType a3 = record({"a"}, {p3}), none = record({}, {});
  const StructType a3b3 = record({"a", "b"}, {sets(3), p3}), a3b4 = record({"a", "b"}, {p3, p4});
  EXPECT_TRUE(a3.isCompatible(record({"b"}, {p4})) && a3.isCompatible(none));
  EXPECT_TRUE(none.isCompatible(a3) && a3.isCompatible(a3b3) && a3b3.isCompatible(a3));
  EXPECT_FALSE(a3.isCompatible(record({"a"}, {p4})) || a3b3.isCompatible(a3b4));
  EXPECT_FALSE(a3.isCompatible(p3) || p3.isCompatible(a3) || a3.isCompatible({}));
  // One-sided at every level: only the fields of the left type are looked up.
  EXPECT_TRUE(record({"r"}, {a3}).isCompatible(record({"r", "s"}, {a3b4, p3})));
  EXPECT_FALSE(record({"r"}, {a3b3}).isCompatible(record({"r"}, {a3b4})));
}

}  // namespace
}  // namespace torvan::datamodel
