#include <torvan/datamodel.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

/// An expression in the plainest form: the text around and between the operands, and what they are.
struct RawNode {
  std::string_view before, between, after;
  std::vector<const RawNode*> operands;
};

/// An expression of the library, and the same as plain nodes.
struct Both {
  Term term;
  const RawNode* raw;
};

/// Makes expressions in which each node is an element of its own.
class Expressions {
 public:
  using Shape = Both (Expressions::*)(std::size_t nodes);

  Expressions(Shape shape, std::size_t nodes) {
    const Both made = (this->*shape)(nodes);
    equation_ =
        session_.createSystemBuilder()->addEquation(LExpression(variable().term), made.term);
    raw_ = made.raw;
  }

  /// One join of many ranges of fields.
  Both wide(std::size_t nodes) {
    std::vector<Both> ranges;
    for (std::size_t i = 0; i < nodes / 3; ++i) ranges.push_back(range());
    return join(ranges);
  }
  /// Joins of two operands, each in the last place of the one around it.
  Both deep(std::size_t nodes) {
    Both all = variable();
    for (std::size_t i = 0; i < nodes / 2; ++i) all = join({variable(), all});
    return all;
  }
  /// Joins of two, all of one height.
  Both balanced(std::size_t nodes) {
    std::vector<Both> level;
    for (std::size_t i = 0; i < nodes / 2; ++i) level.push_back(variable());
    while (level.size() > 1) {
      std::vector<Both> above;
      for (std::size_t i = 0; i + 1 < level.size(); i += 2)
        above.push_back(join({level[i], level[i + 1]}));
      level = std::move(above);
    }
    return level.front();
  }

  const Equation& equation() const { return equation_; }
  std::vector<std::string_view> rawTokens() const {
    std::vector<std::string_view> tokens{"v = "};
    walk([&](std::string_view token) { tokens.push_back(token); }, [](const RawNode*) {});
    return tokens;
  }
  std::vector<const RawNode*> rawVariables() const {
    std::vector<const RawNode*> found;
    const auto collect = [&](const RawNode* node) {
      if (node->operands.empty()) found.push_back(node);
    };
    walk([](std::string_view) {}, collect);
    return found;
  }

 private:
  ExpressionFactory& factory() { return *session_.expressionFactory(); }
  const RawNode* node(RawNode made) {
    return nodes_.emplace_back(std::make_unique<RawNode>(std::move(made))).get();
  }
  Both variable() {
    return {factory().createVariable(LatticeType(), "v"), node({"v", "", "", {}})};
  }
  Both range() {
    const Both of = variable();
    StructRef::Builder field(session_.model());  // without regard to types
    field->setExpr(LExpression(of.term));
    field->setField("f");
    const RawNode* const raw = node({"StructRef(", "", ",'f')", {of.raw}});
    return {factory().createIndexRef(field.create(), 1, 9),
            node({"IndexRef(", "", ",1 : 9)", {raw}})};
  }
  Both join(const std::vector<Both>& operands) {
    std::vector<Term> terms;
    RawNode raw{"Join(", ",", ")", {}};
    for (const Both& operand : operands) {
      terms.push_back(operand.term);
      raw.operands.push_back(operand.raw);
    }
    return {factory().createJoin(terms), node(std::move(raw))};
  }

  /// Goes over the plain expression without recursion.
  void walk(auto useToken, auto useNode) const {
    std::vector<std::pair<const RawNode*, std::size_t>>
        open;  // with the number of the next operand
    const auto enter = [&](const RawNode* node) {
      useNode(node);
      useToken(node->before);
      open.emplace_back(node, 0);
    };
    enter(raw_);
    while (!open.empty()) {
      auto& [node, next] = open.back();
      if (next == node->operands.size()) {
        useToken(node->after);
        open.pop_back();
      } else {
        if (next != 0) useToken(node->between);
        enter(node->operands[next++]);
      }
    }
  }

  Session session_;
  Equation equation_;
  std::vector<std::unique_ptr<RawNode>> nodes_;
  const RawNode* raw_ = nullptr;
};

Side printing(auto print) {
  const auto text = std::make_shared<std::string>();
  return {.run = [=] { *text = print(); },
          .result = [=] { return std::hash<std::string>()(*text); }};
}
/// How many there are; what has been collected is let go of after the run.
template <class Collect>
Side counting(Collect collect) {
  const auto found = std::make_shared<std::invoke_result_t<Collect>>();
  return {.run = [=] { *found = collect(); },
          .finish = [=] { *found = {}; },
          .result = [=] { return found->size(); }};
}

void addShape(Cases& cases, const std::string& name, Expressions::Shape shape, std::size_t nodes) {
  // Both sides work on one expression, which goes with the last of them.
  const auto made = std::make_shared<std::weak_ptr<Expressions>>();
  const auto expressions = [=] {
    auto all = made->lock();
    if (!all) *made = all = std::make_shared<Expressions>(shape, nodes);
    return all;
  };
  const auto print = [=] {
    return printing([all = expressions()] { return all->equation().print(); });
  };
  const auto append = [=] {
    return printing([all = expressions(), tokens = expressions()->rawTokens()] {
      std::string text;
      for (const std::string_view token : tokens) text += token;
      return text;
    });
  };
  cases.push_back({.name = "expression.print, " + name,
                   .size = nodes,
                   .items = nodes,
                   .targets = {timesOf(3, "raw")},
                   .sides = {{"ours", print}, {"raw", append}}});
  const auto collect = [=] {
    return counting([all = expressions()] { return all->equation().getRhsVariables(); });
  };
  const auto walk = [=] { return counting([all = expressions()] { return all->rawVariables(); }); };
  cases.push_back({.name = "expression.variables, " + name,
                   .size = nodes,
                   .items = nodes,
                   .targets = {atMost(25)},
                   .sides = {{"ours", collect}, {"raw", walk}}});
}

}  // namespace

void addExpressionCases(Cases& cases) {
  for (const std::size_t nodes : {10'000u, 1'000'000u}) {
    addShape(cases, "wide", &Expressions::wide, nodes);
    addShape(cases, "deep", &Expressions::deep, nodes);
    addShape(cases, "balanced", &Expressions::balanced, nodes);
  }
}

}  // namespace torvan::datamodel::benchmarks
