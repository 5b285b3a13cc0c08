#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <torvan/datamodel.h>

#include "Numbering.h"

namespace torvan::slicer {

/// Equations in the form in which they are evaluated again and again, with the values of their
/// variables, which are bottom at first.
///
/// Variables and temporaries are numbered, and so are constants that operations need. An equation
/// joins its summands, numbers and other constants, into its target: a join or a conditional on the
/// right side mostly makes no value, but more summands. All other operations leave temporaries,
/// which are computed before.
///
/// Variables share values with each other and with constants. What is shared does not change, and a
/// variable of which equations write parts has its value for itself.
class Program {
 public:
  using Number = Numbering::Number;

  Program() = default;

  /// An equation that writes no variable is left out. Operands that come later are not seen, while
  /// constants, and what selections select, are read by evaluations.
  void add(const datamodel::Equation& equation);
  void reserve(std::size_t equations);
  /// To be called when all equations are there: gives back memory.
  void complete() { numbering_.giveBack(); }
  std::size_t equations() const { return rules_.size() - 1; }
  std::size_t variables() const { return numbering_.elements(); }
  /// All numbers are smaller.
  std::size_t numbers() const { return values_.size(); }
  Number target(Number equation) const { return rules_[equation].target; }
  /// Calls `visit` for each variable that the equation reads, as often as it occurs.
  template <class Visit>
  void forReads(Number equation, Visit visit) const {
    const Rule &rule = rules_[equation], &next = rules_[equation + 1];
    const auto visitAll = [&](auto numbers) {
      for (const Number number : numbers)
        if (kinds_[number] <= Kind::VariableOfParts) visit(number);
    };
    visitAll(summandsOf(rule, next));
    for (const Operation& operation : operationsOf(rule, next)) visitAll(operandsOf(operation));
  }

  /// Joins the right side into the left side; true when that has grown. Equations are to be
  /// evaluated in their order at first, which joins their constants: once, as variables only grow.
  bool evaluate(Number equation);
  /// Has memory brought that an evaluation will look at, each kind some time after the one before,
  /// which leads there. Always inside of its callers, as the compiler leaves out calls of what has
  /// no effect.
  enum class Prefetch : std::uint8_t { Rule, Summands, Handles, Values };
  template <Prefetch what>
  [[gnu::always_inline]] void prefetch(Number equation) const {
    const Rule &rule = rules_[equation], &next = rules_[equation + 1];
    if constexpr (what == Prefetch::Rule) {
      __builtin_prefetch(&rule);
      __builtin_prefetch(&next.summands);  // the last that is read, maybe in the next line
    } else if constexpr (what == Prefetch::Summands) {
      __builtin_prefetch(summands_.data() + rule.summands);
    } else {
      bring<what>(values_[rule.target]);
      // To change a value, its model is asked, which is in the first line of the element.
      if constexpr (what == Prefetch::Values) __builtin_prefetch(values_[rule.target].get());
      for (const Number summand : summandsOf(rule, next)) bring<what>(values_[summand]);
    }
    // Constants are joined in their order, so that the handles come without.
    if constexpr (what == Prefetch::Values)
      if (joined_ + ahead < constants_.size()) bring<what>(constants_[joined_ + ahead].value);
  }
  /// The value of a term under the present values of the variables.
  datamodel::LatticeValue evaluate(const datamodel::Term& term) const;

 private:
  using Element = datamodel::ModelElement::Impl;
  static constexpr std::size_t ahead = 4;  // constants, whose values are brought
  enum class Kind : std::uint8_t { Variable, VariableOfParts, Constant, Temporary };
  enum class Code : std::uint8_t {
    Nothing,
    Variable,
    Constant,
    Join,
    Conditional,
    Meet,
    Field,
    Range,
    Prune,
    Place
  };
  /// Makes a temporary. A `Place` makes none, but leads from a variable to what a left side names;
  /// these come first, the outermost value before its parts.
  struct Operation {
    datamodel::Term term;
    Number result;
    std::uint32_t first, end;  // of its operands
    Code code;
  };
  /// Where the lists of a rule begin. They end where those of the next one do.
  struct Rule {
    Number target;
    std::uint32_t operations, summands;
  };
  /// A constant that an equation joins by its first evaluation.
  struct Constant {
    datamodel::LatticeValue value;
    Number equation;
  };
  /// What an evaluation joins into the target, empty values left out.
  using Sum = std::span<const datamodel::LatticeValue* const>;
  /// A first summand is no sum that begins with a range.
  enum class Stage : std::uint8_t { FirstSummand, Summand, Operand, Complete };
  /// A term in the making; when it is complete, its operands are on the stack from `base` on.
  struct Step {
    Element* term;
    Stage stage;
    std::size_t base;
  };

  /// For a term: variables have the values that they have in the other program.
  explicit Program(const Program* outer) : outer_(outer) {}

  static Code codeOf(const Element& term);
  template <class Visit>
  static void forOperands(Element& term, Code code, Visit visit);
  static bool hasOneType(Element& term, Code code);
  static bool beginsWithRange(Element& term);

  Number add(const datamodel::LatticeValue& value, Kind kind);
  Number numberOf(Element& variable);
  Number newTemporary();
  /// Appends what leads from a variable to the place, and returns the variable, if there is one.
  Element* addPlaces(const datamodel::LExpression& place);
  /// Leaves the number of the term, or those of its summands, on the stack.
  void compile(const datamodel::Term& term, Stage stage);
  void enter(const Step& step, Code code);
  void complete(const Step& step, Code code);

  template <class T>
  static std::span<const T> slice(const std::vector<T>& all, std::uint32_t first,
                                  std::uint32_t end) {
    return {all.data() + first, all.data() + end};
  }
  std::span<const Number> operandsOf(const Operation& operation) const {
    return slice(operands_, operation.first, operation.end);
  }
  std::span<const Number> summandsOf(const Rule& rule, const Rule& next) const {
    return slice(summands_, rule.summands, next.summands);
  }
  std::span<const Operation> operationsOf(const Rule& rule, const Rule& next) const {
    return slice(operations_, rule.operations, next.operations);
  }
  template <Prefetch what>
  [[gnu::always_inline]] static void bring(const datamodel::LatticeValue& value) {
    if constexpr (what == Prefetch::Handles)
      __builtin_prefetch(&value);
    else if (value.get())
      value.get()->prefetch();
  }
  /// Lets go of the constants before that place, and of their list behind the last.
  void letGo(std::size_t joined);
  void compute(const Operation& operation);
  bool join(Number equation, Sum sum);
  bool joinParts(Number variable, Sum sum, std::span<const Operation> operations);
  datamodel::Ref placeOf(Number variable, std::span<const Operation> operations);

  const Program* outer_ = nullptr;
  Numbering numbering_;  // of variables
  std::vector<datamodel::LatticeValue> values_;
  std::vector<Kind> kinds_;
  std::vector<Rule> rules_{Rule{}};  // and one more, at the end of all lists
  std::vector<Operation> operations_;
  std::vector<Number> operands_, summands_;
  std::vector<Constant> constants_;  // in the order of their equations, until all are joined
  std::size_t joined_ = 0;           // of them

  std::vector<Step> pending_;  // the next one last
  std::vector<Number> stack_;
  std::vector<const datamodel::LatticeValue*> room_;  // for the sum of any equation
  std::vector<Number> temporaries_;                   // equations use the same ones
  std::size_t usedTemporaries_ = 0;
};

}  // namespace torvan::slicer
