#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

class StructTest : public SessionTest {
 protected:
  Struct record(const std::vector<std::string>& names, const std::vector<LatticeValue>& fields) {
    return values.createStruct(type, names, fields);
  }
  static std::string storedIn(const LatticeValue& value) {
    std::string names;
    for (const auto& [name, child] : Struct(value)->getValues()) names += name;
    return names;
  }

  PowerSetType p = sets(3);
  StructType type = types.createStructType("S", {"a", "b"}, {p, p});
  StructType outerType = types.createStructType("O", {"r", "s"}, {type, p});
};

TEST_F(StructTest, MissingFieldReadsAsBottomOfItsType) {
  const PowerSet a = set(p, {1});
  const Struct sparse = record({"a"}, {a}), empty = record({}, {});
  EXPECT_TRUE(sparse.at("a") == a);
  EXPECT_TRUE(sparse.at("b") == p->getBottom());
  EXPECT_FALSE(sparse.at("c"));
  EXPECT_EQ(storedIn(sparse), "a");
  EXPECT_TRUE(empty.eq(type->getBottom()) && type->getBottom().eq(empty));
  EXPECT_EQ(storedIn(sparse.join(empty)) + storedIn(empty.meet(sparse)) + storedIn(empty.clone()),
            "ababab");
}

TEST_F(StructTest, OrderNeedsAllFieldsToAgree) {
  const PowerSet low = set(p, {1}), high = set(p, {1, 2}), other = set(p, {3});
  const auto order = [&](const PowerSet& a1, const PowerSet& b1, const PowerSet& a2,
                         const PowerSet& b2) {
    return record({"a", "b"}, {a1, b1}).le(record({"a", "b"}, {a2, b2}));
  };
  EXPECT_EQ(order(low, low, high, low), boolean3::T);
  EXPECT_EQ(order(high, high, low, low), boolean3::F);
  EXPECT_EQ(order(high, low, low, low), boolean3::NA);  // the equal field answers T
  EXPECT_EQ(order(low, high, high, low), boolean3::NA);
  EXPECT_EQ(order(other, high, low, low), boolean3::NA);
}

TEST_F(StructTest, FieldThatTheOtherTypeLacksReadsAsBottom) {
  const StructType wide = types.createStructType("W", {"b", "c"}, {p, p});
  const Struct left = record({"a", "b"}, {set(p, {1}), set(p, {1, 2})});
  const Struct right =
      values.createStruct(wide, {"a", "b", "c"}, {set(p, {3}), set(p, {2}), p->getTop()});
  EXPECT_EQ(PrettyPrinter().dispatch(left.join(right)), "Struct(a : 001,b : 011)");
  EXPECT_EQ(PrettyPrinter().dispatch(left.meet(right)), "Struct(a : 000,b : 010)");
  EXPECT_EQ(left.le(right), boolean3::F);
  EXPECT_FALSE(left.eq(right));
  EXPECT_TRUE(record({"b"}, {set(p, {2})}).eq(right));
  EXPECT_TRUE(left.join(right)->getType() == type);
}

TEST_F(StructTest, RefStoresAMissingField) {
  const Struct value = record({}, {});
  const auto slot = value.ref("a").getLatticeValuePtr();
  EXPECT_EQ(slot, value->getValues()["a"].ref());
  EXPECT_TRUE(value.at("a") == *slot && slot->eq(p->getBottom()));
  EXPECT_FALSE(*slot == p->getBottom());
  EXPECT_EQ(value.ref("a").getLatticeValuePtr(), slot);
  EXPECT_FALSE(*value.ref("x").getLatticeValuePtr());
  EXPECT_EQ(storedIn(value), "ax");
}

TEST_F(StructTest, RefChangesNothingWithoutNeed) {
  const Struct value = record({"a"}, {set(p, {1})}),
               proxy = Struct::createProxy(model, model.newUuid());
  const Array array = Array::createProxy(model, model.newUuid());
  const std::size_t before = model.size();
  EXPECT_RAISES(proxy.ref("a"), "CannotModifyProxy");
  EXPECT_RAISES(array.ref(1, 3), "CannotModifyProxy");
  EXPECT_EQ(model.size(), before);
  Model::Freezer::freeze(model);
  EXPECT_TRUE(value.ref("a").deref() == value.at("a"));
  EXPECT_RAISES(value.ref("b"), "CannotModifyFrozenModel");
}

TEST_F(StructTest, AStoredFieldCountsThoughItsTypeHasNone) {
  const StructType other = types.createStructType("S", {"a"}, {LatticeType()});
  const Struct left = record({"a"}, {set(p, {1})});
  const Struct right = values.createStruct(other, {"a"}, {set(p, {2})});
  EXPECT_EQ(PrettyPrinter().dispatch(left.join(right)), "Struct(a : 011,b : 000)");
}

TEST_F(StructTest, PruneRemovesAndCopiesStoredFields) {
  const Struct value = record({"a", "b"}, {set(p, {1}), set(p, {2})});
  const Struct pruned = value.prune({"a"}), stray = record({"a", "x"}, {set(p, {1}), set(p, {2})});
  EXPECT_EQ(storedIn(pruned), "b");
  EXPECT_TRUE(pruned->getType() == type && pruned.at("b").eq(value.at("b")));
  EXPECT_FALSE(pruned.at("b") == value.at("b"));
  EXPECT_EQ(storedIn(stray.prune({"a"})) + storedIn(stray.clone()), "xab");
  EXPECT_EQ(storedIn(stray.prune({})) + storedIn(value.prune({"unknown"})), "axab");
}

TEST_F(StructTest, PruneGoesDeep) {
  const Struct inner = record({"a", "b"}, {set(p, {1}), set(p, {2})});
  const Struct outer = values.createStruct(outerType, {"r", "s"}, {inner, set(p, {3})});
  const auto pruned = [](const Struct& value, const std::vector<std::string>& path) {
    return PrettyPrinter().dispatch(value.prune(path));
  };
  EXPECT_EQ(pruned(outer, {"r", "a"}), "Struct(r : Struct(b : 010),s : 100)");
  EXPECT_EQ(pruned(outer, {"r"}), "Struct(s : 100)");
  EXPECT_EQ(storedIn(inner), "ab");
  // A field that is not stored is the bottom of its type, which stores all.
  EXPECT_EQ(pruned(values.createStruct(outerType, {}, {}), {"r", "b"}),
            "Struct(r : Struct(a : 000))");
  EXPECT_RAISES(outer.prune({"s", "a"}), castFailure<Struct>());
}

TEST_F(StructTest, WithoutATypeReadsWhatIsStored) {
  const Struct record = make<Struct>();
  EXPECT_FALSE(record.at("a"));
  EXPECT_FALSE(record.ref("a").deref());
  EXPECT_EQ(record->getValues().size(), 1U);
  const Array array = make<Array>();
  EXPECT_FALSE(array.at(2));
  EXPECT_FALSE(array.ref(2).deref());
  EXPECT_EQ(array->getValues().size(), 1U);
}

}  // namespace
}  // namespace torvan::datamodel
