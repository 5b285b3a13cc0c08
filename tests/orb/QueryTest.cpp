#include <orb/zero/query/Comparison.h>
#include <orb/zero/query/Query.h>

#include <functional>
#include <random>
#include <utility>

#include "tests/datamodel/SessionTest.h"

namespace torvan::datamodel {
namespace {

using query::Comparison, query::Constraint, query::Query, query::SearchClassMatchMode;
using enum query::SearchClassMatchMode;

class QueryTest : public SessionTest {
 protected:
  template <class X>
  typename X::Constrainables in(query::AbstractQuery& search,
                                SearchClassMatchMode mode = WithSubclasses) {
    return {search, X::metaClass(), mode};
  }
};

/// Conditions on variables, each beside the plain test that it stands for.
class RandomConditions {
 public:
  using Test = std::function<bool(const Variable&)>;
  using Condition = std::pair<Constraint, Test>;

  RandomConditions(unsigned seed, const Model& model) : random_(seed), model_(model) {
    for (PowerSetType& type : types_) type = PowerSetType::Builder(model).create();
    for (int i = 0; i < 300; ++i) {
      const Variable made = Variable::Builder(model).create();
      if (below(4)) made->setName(name());
      if (below(3)) made->setType(types_[below(2)]);
      if (below(8) == 0) made->destroy();
    }
  }

  Condition any(const Variable::Constrainables& variable, int depth) {
    if (depth == 0) return leaf(variable);
    const Condition a = any(variable, depth - 1), b = any(variable, depth - 1);
    const Test &f = a.second, &g = b.second;
    switch (below(3)) {
      case 0:
        return {a.first && b.first, [=](const Variable& v) { return f(v) && g(v); }};
      case 1:
        return {a.first || b.first, [=](const Variable& v) { return f(v) || g(v); }};
      default:
        return {!a.first, [=](const Variable& v) { return !f(v); }};
    }
  }

  std::size_t below(std::size_t end) { return random_() % end; }

 private:
  std::string name() { return std::string(1, static_cast<char>("\x01m\xff"[below(3)])); }
  Condition leaf(const Variable::Constrainables& variable) {
    const std::string x = name();
    const LatticeType type = types_[below(2)];
    const auto named = [&x](Comparison comparison, auto test) -> Condition {
      return {compare(Variable::name(), comparison, x),
              [=](const Variable& v) { return v->hasName() && test(v->getName(), x); }};
    };
    const Condition leaves[] = {
        named(Comparison::Equal, std::equal_to()),
        named(Comparison::Less, std::less()),
        named(Comparison::LessOrEqual, std::less_equal()),
        named(Comparison::Greater, std::greater()),
        named(Comparison::GreaterOrEqual, std::greater_equal()),
        {variable.name().isPresent(), [](auto& v) { return v->hasName(); }},
        {variable.type() == type, [=](auto& v) { return v->getType() == type; }},
        {variable.type() != type, [=](auto& v) { return v->getType() != type; }},
        {variable.type() == LatticeType(), [](auto& v) { return !v->hasType(); }}};
    return leaves[below(std::size(leaves))];
  }

  std::mt19937 random_;
  Model model_;
  PowerSetType types_[2];
};

TEST_F(QueryTest, FindsWhatAPlainFilterFinds) {
  for (unsigned seed = 0; seed < 100; ++seed) {
    SCOPED_TRACE(seed);
    const Transaction uncommitted(model);
    RandomConditions conditions(seed, model);
    Query<Variable> search(model);
    const auto variable = in<Variable>(search);
    const auto [constraint, test] = conditions.any(variable, static_cast<int>(seed % 5));
    search.where(constraint);

    std::vector<Variable> expected;
    for (const ModelElement element : model.elements(Variable::metaClass()))
      if (test(Variable(element))) expected.emplace_back(element);
    ASSERT_EQ(search.execute(), expected);
  }
}

TEST_F(QueryTest, ComparesSetsWhereverTheirBitsAre) {
  std::vector<PowerSet> expected;
  for (const std::size_t element : {1U, 2U, 1U, 300U}) expected.push_back(bits(400, {element}));
  Query<PowerSet> search(model);
  search.where(in<PowerSet>(search).value() == bitsOf(400, {1}));
  EXPECT_EQ(search.execute(), (std::vector{expected[0], expected[2]}));
}

TEST_F(QueryTest, RefusesWhatItCannotAsk) {
  const auto refusal = [&](auto ask) {
    return failureOf([&] {
      Query<Expression> search(model);
      ask(search);
    });
  };
  EXPECT_EQ(refusal([](auto& s) { Variable::Constrainables(s, Join::metaClass(), ThisClassOnly); }),
            "InvalidValue(torvan.datamodel.Join)");
  EXPECT_EQ(refusal([](auto& s) { Term::Constrainables(s, Term::metaClass(), WithSubclasses); }),
            "InvalidValue(torvan.datamodel.Term)");
  EXPECT_EQ(refusal([&](auto& s) {
              in<Variable>(s, ThisClassOnly);
              in<Variable>(s);
            }),
            "InvalidValue(torvan.datamodel.Variable)");
  const query::Primitive<std::string> name(Variable::name());
  EXPECT_EQ(refusal([&](auto& s) { s.where(name == "x" || !name.isPresent()); }),
            "InvalidValue(torvan.datamodel.Variable.name)");
  EXPECT_RAISES(compare(Variable::name(), Comparison::Equal, std::uint16_t{1}),
                "CannotCastIncompatibleTypes(torvan.datamodel.Variable.name)");
  EXPECT_RAISES(compare(Term::type(), Comparison::Contains, ModelElement()),
                "CannotCastIncompatibleTypes(torvan.datamodel.Term.type)");
  EXPECT_RAISES(compare(PowerSet::value(), Comparison::Less, BitSet()),
                "InvalidValue(torvan.datamodel.PowerSet.value)");
}

TEST_F(QueryTest, ConditionsMayBeOfAnyLength) {
  const Variable x = variable("x"), y = variable("y");
  variable("z");
  Query<Variable> search(model);
  const auto named = in<Variable>(search).name();
  Constraint left = named == "y", right = left, both = left;
  for (int i = 0; i < 50000; ++i) {
    left = left || named == "x";
    right = named == "x" || right;
    both = (both && named != "x") || named == "x";
  }
  search.where(left);
  search.where(right);
  search.where(both);
  EXPECT_EQ(search.execute(), (std::vector{x, y}));
}

/// The accessors of X name its own properties, each of the property's kind.
template <class X, class Accessors>
void expectAccessors(Accessors accessors) {
  Query<X> search(Model::create());
  const auto named = accessors(typename X::Constrainables(search, X::metaClass(), WithSubclasses));
  const auto& own = X::metaClass().own;
  ASSERT_EQ(named.size(), own.size());
  for (std::size_t i = 0; i < named.size(); ++i) EXPECT_EQ(named[i].property(), own[i]);
}

TEST(ConstrainablesTest, NeighbouringAccessorsAreNotMixedUp) {
  using All = std::vector<query::Constrainable>;
  expectAccessors<ArrayElem>([](auto of) { return All{of.index(), of.value()}; });
  expectAccessors<Conditional>([](auto of) {
    return All{of.ctrlExpr(), of.operandTrue(), of.operandFalse()};
  });
  expectAccessors<Equation>([](auto of) { return All{of.lhs(), of.rhs()}; });
  expectAccessors<FieldElem>([](auto of) { return All{of.name(), of.value()}; });
  expectAccessors<FieldType>([](auto of) { return All{of.name(), of.elemType()}; });
  expectAccessors<IndexRef>([](auto of) { return All{of.expr(), of.startIndex(), of.endIndex()}; });
  expectAccessors<LatticeType>([](auto of) {
    return All{of.name(), of.numElems(), of.top(), of.bottom()};
  });
  expectAccessors<Prune>([](auto of) { return All{of.expr(), of.field()}; });
  expectAccessors<StructRef>([](auto of) { return All{of.expr(), of.field()}; });
}

}  // namespace
}  // namespace torvan::datamodel
