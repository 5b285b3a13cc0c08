#include "FixpointSolver.h"

#include <deque>
#include <random>
#include <set>
#include <string>
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

/// Sets as numbers, in the order of the queue: the same values after as many evaluations.
TEST_F(FixpointSolverTest, evaluatesAsOftenAsAPlainLoop) {
  constexpr std::size_t size = 1000;
  struct Equation {
    std::size_t first, second;
    unsigned long constant;
  };
  std::mt19937 random(7);
  const PowerSetType words = sets(64);
  std::vector<Equation> equations(size);
  std::vector<Variable> variables;
  std::vector<std::set<std::size_t>> readers(size);
  for (std::size_t i = 0; i < size; ++i) variables.push_back(variable("x", words));
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned long constant = random() % 16 == 0 ? 1ul << random() % 64 : 0;
    equations[i] = {random() % size, random() % (i + 1), constant};
    readers[equations[i].first].insert(i);
    readers[equations[i].second].insert(i);
    const Term both =
        expressions.createJoin({variables[equations[i].first], variables[equations[i].second]});
    builder.addEquation(
        variables[i],
        expressions.createJoin({both, values.createPowerSet(words, BitSet(64, constant))}));
  }

  std::vector<unsigned long> sums(size);
  std::deque<std::size_t> queue;
  std::vector<bool> isQueued(size, true);
  for (std::size_t i = 0; i < size; ++i) queue.push_back(i);
  std::size_t evaluations = 0;
  for (; !queue.empty(); ++evaluations) {
    const std::size_t i = queue.front();
    queue.pop_front();
    isQueued[i] = false;
    const auto& [first, second, constant] = equations[i];
    const unsigned long sum = sums[i] | sums[first] | sums[second] | constant;
    if (sum == sums[i]) continue;
    sums[i] = sum;
    for (const std::size_t reader : readers[i]) {
      if (!isQueued[reader]) queue.push_back(reader);
      isQueued[reader] = true;
    }
  }

  FixpointSolver solver = solve();
  EXPECT_EQ(solver.statistics().evaluations, evaluations);
  for (std::size_t i = 0; i < size; ++i)
    ASSERT_EQ(PowerSet(solver.evaluate(variables[i]))->getValue(), BitSet(64, sums[i])) << i;

  solver.solve();
  EXPECT_EQ(solver.statistics().evaluations, evaluations + size) << "nothing grows any more";
}

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

/// What variables share is not changed through one of them.
TEST_F(FixpointSolverTest, leavesConstantsAndSharedValuesAlone) {
  const PowerSet constant = set(type, {1});
  builder.addEquation(x, constant);
  builder.addEquation(y, x);
  builder.addEquation(expressions.createIndexRef(x, 2, 2), set(sets(1), {1}));
  builder.addEquation(z, expressions.createJoin({constant, set(type, {4})}));

  FixpointSolver solver = solve();
  EXPECT_EQ(bitsOf(constant), "0001");
  EXPECT_EQ(bitsOf(solver.evaluate(x)), "0011");
  EXPECT_EQ(bitsOf(solver.evaluate(y)), "0011");
  EXPECT_EQ(bitsOf(solver.evaluate(z)), "1001");
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

  const FixpointSolver solver = solve();
  EXPECT_EQ(solver.statistics().equations, 4u);
  EXPECT_EQ(bitsOf(solver.evaluate(x)), "0001");
  EXPECT_EQ(bitsOf(solver.evaluate(z)), "0000");
}

}  // namespace
}  // namespace torvan::slicer
