#include <torvan/datamodel.h>

#include <memory>
#include <string>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

/// An expression in the plainest form: the text around and between the operands, and what they are.
struct RawNode {
  std::string before, between, after;
  std::vector<const RawNode*> operands;
  bool isVariable = false;
};

/// The same expression twice. Wide: one join of many ranges of fields. Deep: a chain of
/// conditionals, each in the false branch of the one around it.
class Expressions {
 public:
  Expressions(std::size_t nodes, bool deep) {
    const Variable variable = factory().createVariable(LatticeType(), "v");
    const RawNode* const rawVariable = node({"v", "", "", {}, true});
    if (deep) {
      Term term = variable;
      const RawNode* raw = rawVariable;
      for (size_ = 1; size_ + 3 <= nodes; size_ += 3) {
        term = factory().createConditional(variable, variable, term);
        raw = node({"Conditional(ctrlExpr: ", ",", ")", {rawVariable, rawVariable, raw}});
      }
      finish(variable, term, raw);
    } else {
      std::vector<Term> terms;
      RawNode join{"Join(", ",", ")", {}};
      for (size_ = 1; size_ + 3 <= nodes; size_ += 3) {
        terms.push_back(factory().createIndexRef(fieldOf(variable), 1, 9));
        join.operands.push_back(
            node({"IndexRef(", "", ",1 : 9)", {node({"StructRef(", "", ",'f')", {rawVariable}})}}));
      }
      finish(variable, factory().createJoin(terms), node(std::move(join)));
    }
  }

  /// Nodes as they are met, one that is met again counting again.
  std::size_t size() const { return size_; }
  std::string print() const { return equation_.print(); }
  std::string rawPrint() const {
    std::string text = "v = ";
    append(text, *raw_);
    return text;
  }
  std::size_t variables() const { return equation_.getRhsVariables().size(); }
  std::size_t rawVariables() const {
    std::vector<const RawNode*> found;
    collect(found, *raw_);
    return found.size();
  }

 private:
  ExpressionFactory& factory() { return *session_.expressionFactory(); }
  /// A reference to a field without regard to types.
  StructRef fieldOf(const LExpression& expr) {
    StructRef::Builder builder(session_.model());
    builder->setExpr(expr);
    builder->setField("f");
    return builder.create();
  }
  const RawNode* node(RawNode made) {
    return nodes_.emplace_back(std::make_unique<RawNode>(std::move(made))).get();
  }
  void finish(const LExpression& lhs, const Term& rhs, const RawNode* raw) {
    equation_ = session_.createSystemBuilder()->addEquation(lhs, rhs);
    raw_ = raw;
  }
  static void append(std::string& text, const RawNode& node) {
    text += node.before;
    for (std::size_t i = 0; i < node.operands.size(); ++i) {
      if (i != 0) text += node.between;
      append(text, *node.operands[i]);
    }
    text += node.after;
  }
  static void collect(std::vector<const RawNode*>& found, const RawNode& node) {
    if (node.isVariable) found.push_back(&node);
    for (const RawNode* const operand : node.operands) collect(found, *operand);
  }

  Session session_;
  Equation equation_;
  std::vector<std::unique_ptr<RawNode>> nodes_;
  const RawNode* raw_ = nullptr;
  std::size_t size_ = 0;
};

template <class Result>
void addSide(const std::string& name, std::size_t nodes, bool deep, const std::string& side,
             Result (Expressions::*run)() const, Result (Expressions::*other)() const) {
  addCase(name + (deep ? " deep" : " wide"), nodes, side, [=](benchmark::State& state) {
    const Expressions expressions(nodes, deep);
    check(state, (expressions.*run)() == (expressions.*other)());
    measure(state, expressions.size(), [&] { benchmark::DoNotOptimize((expressions.*run)()); });
  });
}

}  // namespace

void addExpressionCases() {
  const auto addBoth = [](const char* name, auto ours, auto floor) {
    for (const bool deep : {false, true}) {
      for (const std::size_t nodes : {1'000u, 10'000u}) {
        addSide(name, nodes, deep, "ours", ours, floor);
        addSide(name, nodes, deep, "floor", floor, ours);
      }
    }
  };
  addBoth("expression.print", &Expressions::print, &Expressions::rawPrint);
  addBoth("expression.variables", &Expressions::variables, &Expressions::rawVariables);
}

}  // namespace torvan::datamodel::benchmarks
