#include "FixpointSolver.h"

#include <deque>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "tests/datamodel/SessionTest.h"

namespace torvan::slicer {
namespace {

using namespace datamodel;

/// A system and what it is to be solved to.
class FixpointSolverTest : public SessionTest {
 protected:
  FixpointSolver solve() {
    FixpointSolver solver(builder.build());
    solver.solve();
    return solver;
  }
  static std::string bitsOf(const LatticeValue& value) {
    std::string text;
    to_string(PowerSet(value)->getValue(), text);
    return text;
  }

  PowerSetType type = sets(4);
  Variable x = variable("x", type), y = variable("y", type), z = variable("z", type);
  SystemBuilder builder{model};
};

TEST_F(FixpointSolverTest, solvesTermsOfEveryKind) {
  const StructType record = types.createStructType("R", {"a", "b"}, {type, type});
  const ArrayType array = types.createArrayType("A", type, 3);
  const Variable r = variable("r", record), rest = variable("rest", record);
  const Variable v = variable("v", array), choice = variable("choice", type);
  builder.addEquation(expressions.createStructRef(r, "a"),
                      expressions.createJoin({x, set(type, {4})}));
  builder.addEquation(expressions.createStructRef(r, "b"), set(type, {2}));
  builder.addEquation(rest, expressions.createPrune(r, {"a"}));
  builder.addEquation(expressions.createIndexRef(v, 1), expressions.createStructRef(r, "a"));
  builder.addEquation(expressions.createIndexRef(v, 2, 3), expressions.createIndexRef(v, 1, 2));
  builder.addEquation(x, set(type, {1}));
  builder.addEquation(y, expressions.createMeet({expressions.createIndexRef(v, 3), x}));
  builder.addEquation(choice, expressions.createConditional(expressions.createStructRef(r, "b"), y,
                                                            set(type, {3})));
  builder.addEquation(expressions.createIndexRef(z, 2, 3), set(sets(2), {2}));

  const FixpointSolver solver = solve();
  const auto bits = [&](const Term& term) { return bitsOf(solver.evaluate(term)); };
  EXPECT_EQ(bits(expressions.createStructRef(r, "a")), "1001");
  EXPECT_EQ(bits(expressions.createStructRef(rest, "a")), "0000");
  EXPECT_EQ(bits(expressions.createStructRef(rest, "b")), "0010");
  for (std::uint16_t index = 1; index <= 3; ++index)
    EXPECT_EQ(bits(expressions.createIndexRef(v, index)), "1001") << index;
  EXPECT_EQ(bits(y), "0001");
  EXPECT_EQ(bits(choice), "0111");
  EXPECT_EQ(bits(z), "0100");
  EXPECT_EQ(bits(expressions.createMeet({choice, expressions.createJoin({z, x})})), "0101");
  EXPECT_EQ(bits(variable("unknown", type)), "0000");
  EXPECT_EQ(bitsOf(type->getBottom()), "0000");
}

/// Evaluates the equations in the order of a queue.
class PlainSolution {
 public:
  explicit PlainSolution(const System& system) {
    const auto& equations = system->getEquations();
    std::unordered_map<Variable, std::set<std::size_t>, orb::zero::ElementHash> readers;
    std::deque<std::size_t> queue;
    for (const Equation& equation : equations) {
      for (const Variable& read : equation.getRhsVariables()) readers[read].insert(queue.size());
      queue.push_back(queue.size());
    }
    std::vector<bool> isQueued(queue.size(), true);
    for (; !queue.empty(); ++evaluations) {
      const std::size_t next = queue.front();
      queue.pop_front();
      isQueued[next] = false;
      const Equation equation = equations[next];
      if (!joinInto(equation->getLhs(), valueOf(equation->getRhs()))) continue;
      for (const std::size_t reader : readers[equation.getLhsVariable()]) {
        if (!isQueued[reader]) queue.push_back(reader);
        isQueued[reader] = true;
      }
    }
  }
  LatticeValue valueOf(const Term& term) {
    if (is<Variable>(term)) return at(Variable(term));
    if (is<Join>(term)) return combined(Join(term)->getOperands(), &LatticeValue::join);
    if (is<Meet>(term)) return combined(Meet(term)->getOperands(), &LatticeValue::meet);
    if (!is<IndexRef>(term)) return LatticeValue(term);
    const IndexRef range(term);
    return IndexableValue(valueOf(range->getExpr()))
        .at(range->getStartIndex(), range->getEndIndex());
  }

  std::size_t evaluations = 0;

 private:
  template <class X>
  static bool is(const Term& term) {
    return term->getMetaClass().isKindOf(X::metaClass());
  }
  LatticeValue& at(const Variable& variable) {
    return values_.try_emplace(variable, variable->getType()->getBottom().clone()).first->second;
  }
  template <class Operands, class Operation>
  LatticeValue combined(const Operands& operands, Operation operation) {
    LatticeValue result = valueOf(*operands.begin());
    for (const Term& operand : operands) result = (result.*operation)(valueOf(operand));
    return result;
  }
  bool joinInto(const LExpression& place, const LatticeValue& more) {
    Ref ref(&at(is<Variable>(place) ? Variable(place) : Variable(IndexRef(place)->getExpr())));
    if (is<IndexRef>(place)) {
      const IndexRef range(place);
      ref = ref.ref(range->getStartIndex(), range->getEndIndex(), {});
    }
    const LatticeValue before = ref.deref(), joined = before.join(more);
    if (joined.eq(before)) return false;
    ref.assign(joined);
    return true;
  }

  std::unordered_map<Variable, LatticeValue, orb::zero::ElementHash> values_;
};

TEST_F(FixpointSolverTest, evaluatesAsOftenAsAPlainLoop) {
  std::mt19937 random(7);
  const PowerSetType words = sets(64);
  std::vector<Variable> variables(1000);
  for (Variable& each : variables) each = variable("x", words);
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const unsigned long constant = random() % 16 == 0 ? 1ul << random() % 64 : 0;
    const Term both = expressions.createJoin(
        {variables[random() % variables.size()], variables[random() % (i + 1)]});
    builder.addEquation(
        variables[i],
        expressions.createJoin({both, values.createPowerSet(words, BitSet(64, constant))}));
  }
  PlainSolution expected(builder.build());
  FixpointSolver solver = solve();
  EXPECT_EQ(solver.statistics().evaluations, expected.evaluations);
  for (const Variable& each : variables)
    ASSERT_EQ(bitsOf(solver.evaluate(each)), bitsOf(expected.valueOf(each)));

  solver.solve();
  EXPECT_EQ(solver.statistics().evaluations, expected.evaluations + variables.size())
      << "nothing grows any more";
}

/// Ranges are shorter than their types, longer than what they are given to, and change in place.
TEST_F(FixpointSolverTest, solvesAnySystemOfSetsAndRanges) {
  std::mt19937 random(23);
  const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
  const std::vector variables{x, y, z, variable("v", type)};
  const std::vector constants{set(type, {1}), set(type, {2}), set(type, {3}), set(type, {4})};
  const auto range = [&] {
    const auto first = static_cast<std::uint16_t>(1 + below(4));
    return expressions.createIndexRef(variables[below(4)], first,
                                      static_cast<std::uint16_t>(first + below(5 - first)));
  };
  const std::function<Term(int)> term = [&](int depth) -> Term {
    const unsigned kind = below(depth > 0 ? 6 : 3);
    if (kind == 0) return variables[below(4)];
    if (kind == 1) return range();
    if (kind == 2) return constants[below(4)];
    const std::vector operands{term(depth - 1), term(depth - 1)};
    return kind == 3 ? Term(expressions.createMeet(operands)) : expressions.createJoin(operands);
  };
  for (int system = 0; system < 300; ++system) {
    SystemBuilder equations(model);
    for (unsigned count = 3 + below(6); count > 0; --count)
      equations.addEquation(below(3) > 0 ? LExpression(variables[below(4)]) : range(), term(3));
    PlainSolution expected(equations.build());  // first: constants are to stay as they are
    FixpointSolver solver(equations.build());
    solver.solve();
    for (const Variable& each : variables)
      ASSERT_EQ(bitsOf(solver.evaluate(each)), bitsOf(expected.valueOf(each))) << system;
  }
}

/// What variables share is not changed through one of them.
TEST_F(FixpointSolverTest, leavesConstantsAndSharedValuesAlone) {
  const PowerSet constant = set(type, {1});
  builder.addEquation(x, constant);
  builder.addEquation(y, x);
  builder.addEquation(expressions.createIndexRef(x, 2, 2), set(sets(1), {1}));
  builder.addEquation(z, expressions.createJoin({constant, set(type, {4})}));
  const Variable reader = variable("r", type), late = variable("l", sets(1));
  builder.addEquation(reader, expressions.createJoin({y, set(type, {4})}));
  builder.addEquation(expressions.createIndexRef(x, 3, 3), late);  // grows behind y and its reader
  builder.addEquation(late, set(sets(1), {1}));

  FixpointSolver solver = solve();
  EXPECT_EQ(bitsOf(constant), "0001");
  EXPECT_EQ(bitsOf(solver.evaluate(x)), "0111");
  EXPECT_EQ(bitsOf(solver.evaluate(y)), "0111");
  EXPECT_EQ(bitsOf(solver.evaluate(z)), "1001");
  EXPECT_EQ(bitsOf(solver.evaluate(reader)), "1111");
}

TEST_F(FixpointSolverTest, solvesDeepTermsAndMissingSides) {
  Term deep = set(type, {1});
  for (int depth = 0; depth < 100'000; ++depth)
    deep = depth % 2 ? Term(expressions.createMeet({deep, y})) : expressions.createJoin({deep, x});
  builder.addEquation(x, deep);
  builder.addEquation(y, set(type, {1, 2}));
  builder.addEquation(z, Term());
  builder.addEquation(LExpression(), x);
  builder.addEquation(z, expressions.createJoin({}));
  builder.addEquation(x, expressions.createMeet({y, expressions.createJoin({})}));

  const FixpointSolver solver = solve();
  EXPECT_EQ(solver.statistics().equations, 5u);
  EXPECT_EQ(bitsOf(solver.evaluate(x)), "0011");
  EXPECT_EQ(bitsOf(solver.evaluate(z)), "0000");
}

}  // namespace
}  // namespace torvan::slicer
