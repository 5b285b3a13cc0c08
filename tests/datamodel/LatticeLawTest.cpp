#include <functional>
#include <ostream>
#include <random>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

/// A lattice, and how many random triples of its values are tried.
struct Lattice {
  const char* name;
  std::function<LatticeType(TypeFactory&)> makeType;
  int triples = 40;

  friend std::ostream& operator<<(std::ostream& out, const Lattice& lattice) {
    return out << lattice.name;
  }
};

template <std::uint16_t size>
LatticeType powerSets(TypeFactory& types) {
  return types.createPowerSetType("P", size);
}
LatticeType record(TypeFactory& types) {
  return types.createStructType("S", {"b", "a", "c"},
                                {powerSets<3>(types), powerSets<70>(types), powerSets<1>(types)});
}
LatticeType arrayOf(TypeFactory& types, const LatticeType& elem, std::uint16_t size = 3) {
  return types.createArrayType("A", elem, size);
}
LatticeType nested(TypeFactory& types) {
  return types.createStructType(
      "N", {"table", "inner", "set"},
      {arrayOf(types, arrayOf(types, powerSets<5>(types))), record(types), powerSets<64>(types)});
}

const Lattice lattices[] = {
    {"NoElements", powerSets<0>},
    {"OneElement", powerSets<1>},
    {"FewElements", powerSets<3>},
    {"OneWord", powerSets<64>},
    {"OneWordAndABit", powerSets<65>},
    {"FourWords", powerSets<256>},
    {"MostElements", powerSets<65535>, 4},
    {"Record", record},
    {"RecordWithoutFields", [](auto& types) { return types.createStructType("S", {}, {}); }},
    {"Array", [](auto& types) { return arrayOf(types, powerSets<3>(types)); }},
    {"ArrayWithoutElements", [](auto& types) { return arrayOf(types, powerSets<3>(types), 0); }},
    {"ArrayOfRecords", [](auto& types) { return arrayOf(types, record(types), 2); }},
    {"Nested", nested, 15},
};

class LatticeLawTest : public SessionTest, public testing::WithParamInterface<Lattice> {
 protected:
  /// Small universes meet often; large ones need sets that are dense, sparse and of whole words.
  BitSet randomBits(std::size_t size) {
    BitSet bits(size);
    const unsigned long density = random_() % 4;
    for (std::size_t i = 0; i < size; ++i) bits[i] = random_() % 4 < density;
    return bits;
  }
  LatticeValue randomValue(const LatticeType& of) {
    if (of->getMetaClass() == PowerSetType::metaClass())
      return values.createPowerSet(PowerSetType{of}, randomBits(of->getNumElems()));
    if (of->getMetaClass() == ArrayType::metaClass()) {
      const Array array = values.createArray(ArrayType{of}, {}, {});
      for (std::uint16_t i = 1; i <= of->getNumElems(); ++i)
        array->store(i, randomValue(ArrayType(of)->getElemType()));
      return array;
    }
    const Struct value = values.createStruct(StructType{of}, {}, {});
    for (const auto& [name, field] : StructType(of)->getFields())
      if (random_() % 4 != 0) value->store(name, randomValue(field->getElemType()));
    return value;
  }

  template <class Check>
  void forTriples(Check check) {
    for (int i = 0; i < GetParam().triples && !HasFailure(); ++i) {
      const LatticeValue a = randomValue(type), b = randomValue(type), c = randomValue(type);
      check(a, b, c);
      check(a, a.join(b), b);  // a chain, which random values rarely are
      check(a.meet(b), b, b.join(c));
    }
  }
  static bool below(const LatticeValue& a, const LatticeValue& b) { return a.le(b) == boolean3::T; }

  /// How many elements the model has more after the call.
  template <class Call>
  std::size_t growth(Call call) {
    const std::size_t before = model.size();
    call();
    return model.size() - before;
  }

  const LatticeType type = GetParam().makeType(types);

 private:
  std::mt19937 random_{11};
};

TEST_P(LatticeLawTest, OrderIsPartial) {
  forTriples([](const auto& a, const auto& b, const auto& c) {
    EXPECT_TRUE(below(a, a) && a.eq(a));
    EXPECT_EQ(below(a, b) && below(b, a), a.eq(b));
    EXPECT_EQ(a.eq(b), b.eq(a));
    if (below(a, b) && below(b, c)) {
      EXPECT_TRUE(below(a, c));
    }
    if (a.le(b) == boolean3::F) {
      EXPECT_TRUE(below(b, a) && !a.eq(b));
    }
  });
}

TEST_P(LatticeLawTest, OrderAgreesWithJoinAndMeet) {
  forTriples([&](const auto& a, const auto& b, const auto& c) {
    EXPECT_EQ(below(a, b), a.join(b).eq(b));
    EXPECT_EQ(below(a, b), a.meet(b).eq(a));
    EXPECT_TRUE(below(a, a.join(b)) && below(b, a.join(b)));
    EXPECT_TRUE(below(a.meet(b), a) && below(a.meet(b), b));
    EXPECT_EQ(below(a.join(b), c), below(a, c) && below(b, c));
    EXPECT_EQ(below(c, a.meet(b)), below(c, a) && below(c, b));
    EXPECT_TRUE(below(type->getBottom(), a) && below(a, type->getTop()));
  });
}

TEST_P(LatticeLawTest, JoinAndMeetObeyTheAlgebra) {
  forTriples([](const auto& a, const auto& b, const auto& c) {
    EXPECT_TRUE(a.join(b).eq(b.join(a)) && a.meet(b).eq(b.meet(a)));
    EXPECT_TRUE(a.join(b.join(c)).eq(a.join(b).join(c)));
    EXPECT_TRUE(a.meet(b.meet(c)).eq(a.meet(b).meet(c)));
    EXPECT_TRUE(a.join(a).eq(a) && a.meet(a).eq(a));
    EXPECT_TRUE(a.join(a.meet(b)).eq(a) && a.meet(a.join(b)).eq(a));
    EXPECT_TRUE(a.meet(b.join(c)).eq(a.meet(b).join(a.meet(c))));
  });
}

TEST_P(LatticeLawTest, ResultsAreNewAndOperandsStayTheSame) {
  const std::size_t whole = growth([&] { type->getTop().clone(); });
  forTriples([&](const auto& a, const auto& b, const auto&) {
    const auto before = describe(a) + describe(b);
    EXPECT_EQ(growth([&] { EXPECT_TRUE(a.join(b)->getType() == type); }), whole);
    EXPECT_EQ(growth([&] { EXPECT_TRUE(a.meet(b)->getType() == type); }), whole);
    EXPECT_EQ(growth([&] { EXPECT_TRUE(a.clone().eq(a) && !(a.clone() == a)); }), 2 * whole);
    EXPECT_EQ(describe(a) + describe(b), before);
  });
}

TEST_P(LatticeLawTest, JoinIntoMakesTheJoinAndChangesOnlyWhatItsHandleAloneHolds) {
  const bool isSet = type->getMetaClass() == PowerSetType::metaClass();
  forTriples([&](const auto& a, const auto& b, const auto& c) {
    const LatticeValue* const others[] = {&b, &c};
    const LatticeValue wanted = a.join(b).join(c);
    const LatticeValue before[] = {a.clone(), b.clone(), c.clone()};  // not asked for their bits
    for (const unsigned way : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
      const bool isAlone = way & 1, isAtOnce = way & 2;
      const Sharing sharing{(way & 4) != 0};
      LatticeValue value = isAlone ? a.clone() : a;
      const auto* const element = value.get();
      const auto join = [&] {
        if (isAtOnce) return joinAllInto(value, others, sharing);
        const bool isMore = joinInto(value, b, sharing);
        return joinInto(value, c, sharing) || isMore;
      };
      {
        const Transaction undone(model);
        EXPECT_EQ(join(), !wanted.eq(a));
        EXPECT_TRUE(value.eq(wanted) && !join());
        EXPECT_EQ(value.get() == element, wanted.eq(a) || (isSet && isAlone));
        EXPECT_TRUE((isSet && sharing == Sharing::Allowed) || !(value == b || value == c));
      }
      EXPECT_TRUE(value.get() != element || value.eq(a));
    }
    EXPECT_TRUE(a.eq(before[0]) && b.eq(before[1]) && c.eq(before[2]));
  });
}

TEST_P(LatticeLawTest, RightOperandMayBeOfAnotherTypeOrModel) {
  Session foreign;
  for (TypeFactory* const factory : {&types, foreign.typeFactory()}) {
    const LatticeType same = GetParam().makeType(*factory);
    const LatticeValue a = randomValue(type), top = same->getTop(), bottom = same->getBottom();
    EXPECT_TRUE(a.join(top).eq(type->getTop()) && a.meet(bottom).eq(type->getBottom()));
    EXPECT_TRUE(below(a, top) && below(bottom, a));
    const std::size_t before = foreign.model().size();
    const std::size_t whole = growth([&] { type->getTop().clone(); });
    EXPECT_EQ(growth([&] { a.join(top), a.meet(top), a.join(bottom); }), 3 * whole);
    const LatticeValue* const others[] = {&top};
    LatticeValue one = a, all = a;
    EXPECT_EQ(joinInto(one, top, Sharing::Allowed), !a.eq(top));
    EXPECT_EQ(joinAllInto(all, others, Sharing::Allowed), !a.eq(top));
    EXPECT_TRUE(one->getType() == type && all->getType() == type && one.eq(all));
    EXPECT_EQ(foreign.model().size(), before);
  }
}

INSTANTIATE_TEST_SUITE_P(All, LatticeLawTest, testing::ValuesIn(lattices),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace torvan::datamodel
