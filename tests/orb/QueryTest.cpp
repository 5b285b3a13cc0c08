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
  /// The results among the elements of X and its subclasses.
  template <class X>
  std::vector<X> find(const Constraint& constraint) {
    Query<X> search(model);
    search.where(constraint);
    return search.execute();
  }
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
    const auto named = [](auto test) {
      return [=](const Variable& v) { return v->hasName() && test(v->getName()); };
    };
    switch (below(9)) {
      case 0:
        return {variable.name() == x, named([=](auto& n) { return n == x; })};
      case 1:
        return {variable.name() < x, named([=](auto& n) { return n < x; })};
      case 2:
        return {variable.name() <= x, named([=](auto& n) { return n <= x; })};
      case 3:
        return {variable.name() > x, named([=](auto& n) { return n > x; })};
      case 4:
        return {variable.name() >= x, named([=](auto& n) { return n >= x; })};
      case 5:
        return {variable.name().isPresent(), named([](auto&) { return true; })};
      case 6:
        return {variable.type() == type, [=](auto& v) { return v->getType() == type; }};
      case 7:
        return {variable.type() != type, [=](auto& v) { return v->getType() != type; }};
      default:
        return {variable.type() == LatticeType(), [](auto& v) { return !v->hasType(); }};
    }
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

TEST_F(QueryTest, SeesEveryChangeAndItsUndo) {
  const Variable x = variable("x");
  Query<Variable> search(model);
  search.where(in<Variable>(search).name() == "x");
  {
    const Transaction transaction(model);
    x->setName("y");
    const Variable second = variable("x");
    EXPECT_EQ(search.execute(), std::vector{second});
    for (const Variable& found : search.execute()) found->destroy();
    EXPECT_TRUE(search.execute().empty());
  }
  EXPECT_EQ(search.execute(), std::vector{x});
}

TEST_F(QueryTest, SearchesTheClassWithOrWithoutItsSubclasses) {
  const Variable x = variable("x");
  const PowerSet value = make<PowerSet>();
  const Join join = make<Join>();
  const std::pair<const meta::ClassInfo*, std::vector<ModelElement>> expected[] = {
      {&Term::metaClass(), {x, value, join}},
      {&Expression::metaClass(), {x, join}},
      {&Variable::metaClass(), {x}}};
  for (const auto& [type, found] : expected) {
    Query<ModelElement> all(model), exact(model);
    all.where(!Term::Constrainables(all, *type, WithSubclasses).type().isPresent());
    exact.where(!Term::Constrainables(exact, *type, ThisClassOnly).type().isPresent());
    EXPECT_EQ(all.execute(), found);
    EXPECT_EQ(exact.execute(), type->isAbstract() ? std::vector<ModelElement>() : found);
  }
}

TEST_F(QueryTest, LooksIntoCollections) {
  const StructType record = types.createStructType("R", {"a"}, {sets(2)});
  const PowerSetType colours = types.createPowerSetType("C", {"red", "green"});
  const Variable x = variable("x"), y = variable("y");
  const Join both = make<Join>(), none = make<Join>();
  for (const Variable& operand : {x, y, y}) both->getOperands().add(operand);
  const System system = make<System>();
  const Equation inside = make<Equation>(), outside = make<Equation>();
  system->getEquations().add(inside);

  const query::ElementCollection operands(Join::operands()), equations(System::equations());
  EXPECT_EQ(find<Join>(operands.contains(y)), std::vector{both});
  EXPECT_EQ(find<Join>(operands.isPresent()), std::vector{both});
  EXPECT_EQ(find<Join>(!operands.contains(Variable())), (std::vector{both, none}));
  EXPECT_EQ(find<System>(equations.contains(inside)), std::vector{system});
  EXPECT_TRUE(find<System>(equations.contains(outside)).empty());
  const FieldType a = record->getFields()["a"];
  EXPECT_EQ(find<StructType>(query::ElementCollection(StructType::fields()).contains(a)),
            std::vector{record});
  EXPECT_EQ(find<PowerSetType>(
                compare(PowerSetType::universe(), Comparison::Contains, std::string("green"))),
            std::vector{colours});
}

TEST_F(QueryTest, ComparesPropertiesKnownAtRunTime) {
  const PowerSetType two = sets(2), three = sets(3);
  const std::pair<Comparison, std::vector<PowerSetType>> expected[] = {
      {Comparison::Equal, {two}},     {Comparison::NotEqual, {three}},
      {Comparison::Less, {}},         {Comparison::LessOrEqual, {two}},
      {Comparison::Greater, {three}}, {Comparison::GreaterOrEqual, {two, three}}};
  for (const auto& [comparison, found] : expected)
    EXPECT_EQ(find<PowerSetType>(compare(LatticeType::numElems(), comparison, std::uint16_t{2})),
              found);
  const LatticeValue top = two->getTop();
  EXPECT_EQ(find<PowerSetType>(compare(LatticeType::top(), Comparison::Equal, top)),
            std::vector{two});
  EXPECT_EQ(find<PowerSet>(compare(PowerSet::value(), Comparison::Equal, bitsOf(2, {1, 2}))),
            std::vector{PowerSet(top)});
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
  EXPECT_EQ(failureOf([] { compare(Variable::name(), Comparison::Equal, std::uint16_t{1}); }),
            "CannotCastIncompatibleTypes(torvan.datamodel.Variable.name)");
  EXPECT_EQ(failureOf([] { compare(Term::type(), Comparison::Contains, ModelElement()); }),
            "CannotCastIncompatibleTypes(torvan.datamodel.Term.type)");
  EXPECT_EQ(failureOf([] { compare(PowerSet::value(), Comparison::Less, BitSet()); }),
            "InvalidValue(torvan.datamodel.PowerSet.value)");
}

/// X has these accessors for its own properties, each of the property's kind.
template <class X, auto... accessors>
void expectAccessors() {
  Query<X> search(Model::create());
  const typename X::Constrainables of(search, X::metaClass(), WithSubclasses);
  const std::vector<Property> declared(X::metaClass().own.begin(), X::metaClass().own.end());
  EXPECT_EQ((std::vector<Property>{(of.*accessors)().property()...}), declared);
}

TEST(ConstrainablesTest, EveryPropertyHasItsAccessor) {
  expectAccessors<Array, &Array::Constrainables::values>();
  expectAccessors<ArrayElem, &ArrayElem::Constrainables::index,
                  &ArrayElem::Constrainables::value>();
  expectAccessors<ArrayType, &ArrayType::Constrainables::elemType>();
  expectAccessors<Conditional, &Conditional::Constrainables::ctrlExpr,
                  &Conditional::Constrainables::operandTrue,
                  &Conditional::Constrainables::operandFalse>();
  expectAccessors<Equation, &Equation::Constrainables::lhs, &Equation::Constrainables::rhs>();
  expectAccessors<FieldElem, &FieldElem::Constrainables::name, &FieldElem::Constrainables::value>();
  expectAccessors<FieldType, &FieldType::Constrainables::name,
                  &FieldType::Constrainables::elemType>();
  expectAccessors<IndexRef, &IndexRef::Constrainables::expr, &IndexRef::Constrainables::startIndex,
                  &IndexRef::Constrainables::endIndex>();
  expectAccessors<Join, &Join::Constrainables::operands>();
  expectAccessors<LatticeType, &LatticeType::Constrainables::name,
                  &LatticeType::Constrainables::numElems, &LatticeType::Constrainables::top,
                  &LatticeType::Constrainables::bottom>();
  expectAccessors<Meet, &Meet::Constrainables::operands>();
  expectAccessors<PowerSet, &PowerSet::Constrainables::value>();
  expectAccessors<PowerSetType, &PowerSetType::Constrainables::universe>();
  expectAccessors<Prune, &Prune::Constrainables::expr, &Prune::Constrainables::field>();
  expectAccessors<Struct, &Struct::Constrainables::values>();
  expectAccessors<StructRef, &StructRef::Constrainables::expr, &StructRef::Constrainables::field>();
  expectAccessors<StructType, &StructType::Constrainables::fields>();
  expectAccessors<System, &System::Constrainables::equations>();
  expectAccessors<Term, &Term::Constrainables::type>();
  expectAccessors<Variable, &Variable::Constrainables::name>();
}

}  // namespace
}  // namespace torvan::datamodel
