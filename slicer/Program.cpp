#include "Program.h"

#include <algorithm>
#include <utility>

#include <torvan/datamodel/JoinInto.h>

namespace torvan::slicer {

using namespace datamodel;

namespace {

template <class X>
bool is(const ModelElement::Impl& term) {
  return term.isOf(X::classNumber, X::metaClass());
}
template <class X>
auto& as(ModelElement::Impl& term) {
  return static_cast<typename X::Impl&>(term);
}

const LatticeType& typeOf(ModelElement::Impl& term) { return as<Term>(term).getType(); }

/// Whether the range is one element of an array, whose value is of the type of the range.
bool isOneElement(const IndexRef::Impl& range) {
  const LExpression& whole = range.getExpr();
  return whole && whole->getType() && is<ArrayType>(*whole->getType().get()) &&
         (range.getEndIndex() == 0 || range.getEndIndex() == range.getStartIndex());
}

}  // namespace

Program::Code Program::codeOf(const Element& term) {
  if (is<Variable>(term)) return Code::Variable;
  if (is<LatticeValue>(term)) return Code::Constant;
  if (is<Join>(term)) return Code::Join;
  if (is<Meet>(term)) return Code::Meet;
  if (is<StructRef>(term)) return Code::Field;
  if (is<IndexRef>(term)) return Code::Range;
  if (is<Conditional>(term)) return Code::Conditional;
  if (is<Prune>(term)) return Code::Prune;
  return Code::Nothing;
}

/// Calls `visit` for the operands that there are, from left to right. What decides between two
/// operands comes after them, as their type is that of the conditional.
template <class Visit>
void Program::forOperands(Element& term, Code code, Visit visit) {
  const auto visitAll = [&](const auto&... operands) {
    ((operands ? visit(*operands.get()) : void()), ...);
  };
  switch (code) {
    case Code::Join:
      for (const Term& operand : as<Join>(term).getOperands()) visitAll(operand);
      break;
    case Code::Meet:
      for (const Term& operand : as<Meet>(term).getOperands()) visitAll(operand);
      break;
    case Code::Conditional: {
      const auto& choice = as<Conditional>(term);
      visitAll(choice.getOperandTrue(), choice.getOperandFalse(), choice.getCtrlExpr());
      break;
    }
    case Code::Field:
      return visitAll(as<StructRef>(term).getExpr());
    case Code::Range:
      return visitAll(as<IndexRef>(term).getExpr());
    case Code::Prune:
      return visitAll(as<Prune>(term).getExpr());
    default:
      break;
  }
}

/// Otherwise the type of the first operand decides what of the others counts.
bool Program::hasOneType(Element& term, Code code) {
  const LatticeType& type = typeOf(term);
  bool isOne = static_cast<bool>(type);
  forOperands(term, code, [&](Element& operand) { isOne = isOne && typeOf(operand) == type; });
  return isOne;
}

/// Whether what comes first in the term is a range that may be shorter than its type: then so is
/// the value of the term.
bool Program::beginsWithRange(Element& term) {
  Element* first = &term;
  Code code = codeOf(term);
  while (code == Code::Join || code == Code::Meet || code == Code::Conditional) {
    Element* operand = nullptr;
    forOperands(*first, code, [&](Element& each) { operand = operand ? operand : &each; });
    if (!operand) return false;
    first = operand;
    code = codeOf(*first);
  }
  return code == Code::Range && !isOneElement(as<IndexRef>(*first));
}

// ---------------------------------------------------------------- compilation
/// Room that is not needed costs no memory, while lists that grow leave their former places behind.
void Program::reserve(std::size_t equations) {
  rules_.reserve(equations + 1);
  numbering_.reserve(equations);
  values_.reserve(equations);
  kinds_.reserve(equations);
  summands_.reserve(2 * equations);
  constants_.reserve(equations);
}

void Program::add(const Equation& equation) {
  Element* const variable = addPlaces(equation->getLhs());
  if (!variable) return;
  Rule& rule = rules_.back();
  rule.target = numberOf(*variable);
  if (rule.operations != operations_.size() && kinds_[rule.target] == Kind::Variable) {
    kinds_[rule.target] = Kind::VariableOfParts;
    if (LatticeValue& value = values_[rule.target]) value = value.clone();
  }
  const std::size_t constants = constants_.size();
  compile(equation->getRhs(), Stage::Summand);
  summands_.insert(summands_.end(), stack_.begin(), stack_.end());
  const std::size_t summands = summands_.size() - rule.summands;
  room_.resize(std::max(room_.size(), summands + constants_.size() - constants));
  rules_.push_back({0, static_cast<std::uint32_t>(operations_.size()),
                    static_cast<std::uint32_t>(summands_.size())});
}

Program::Element* Program::addPlaces(const LExpression& place) {
  const auto first = static_cast<std::ptrdiff_t>(operations_.size());
  const LExpression* inner = &place;
  while (*inner && !is<Variable>(*inner->get())) {
    operations_.push_back({*inner, 0, 0, 0, Code::Place});
    Element& selection = *inner->get();
    inner = is<StructRef>(selection) ? &as<StructRef>(selection).getExpr()
                                     : &as<IndexRef>(selection).getExpr();
  }
  if (*inner)
    std::reverse(operations_.begin() + first, operations_.end());
  else
    operations_.erase(operations_.begin() + first, operations_.end());
  return inner->get();
}

void Program::compile(const Term& term, Stage stage) {
  stack_.clear();
  usedTemporaries_ = 0;
  if (term) pending_.push_back({term.get(), stage, 0});
  while (!pending_.empty()) {
    const Step step = pending_.back();
    pending_.pop_back();
    const Code code = codeOf(*step.term);
    step.stage == Stage::Complete ? complete(step, code) : enter(step, code);
  }
}

void Program::enter(const Step& step, Code code) {
  Element& term = *step.term;
  if (code == Code::Nothing) return;
  if (code == Code::Variable) return stack_.push_back(numberOf(term));
  const bool isSummand = step.stage <= Stage::Summand;
  if (code == Code::Constant) {
    LatticeValue value{ModelElement(&term)};
    if (isSummand)
      constants_.push_back({std::move(value), static_cast<Number>(equations())});
    else
      stack_.push_back(add(value, Kind::Constant));
    return;
  }
  const bool isSum = isSummand && (code == Code::Join || code == Code::Conditional) &&
                     hasOneType(term, code) &&
                     (step.stage == Stage::FirstSummand || !beginsWithRange(term));
  if (!isSum) pending_.push_back({&term, Stage::Complete, stack_.size()});
  const auto first = static_cast<std::ptrdiff_t>(pending_.size());
  Stage stage = isSum ? Stage::FirstSummand : Stage::Operand;
  forOperands(term, code, [&](Element& operand) {
    pending_.push_back({&operand, stage, 0});
    if (isSum) stage = Stage::Summand;
  });
  std::reverse(pending_.begin() + first, pending_.end());
}

void Program::complete(const Step& step, Code code) {
  const auto first = stack_.begin() + static_cast<std::ptrdiff_t>(step.base);
  const auto begin = static_cast<std::uint32_t>(operands_.size());
  operands_.insert(operands_.end(), first, stack_.end());
  stack_.erase(first, stack_.end());
  stack_.push_back(newTemporary());
  operations_.push_back({Term(ModelElement(step.term)), stack_.back(), begin,
                         static_cast<std::uint32_t>(operands_.size()), code});
}

Program::Number Program::add(const LatticeValue& value, Kind kind) {
  if (kind != Kind::Variable) numbering_.add();
  values_.push_back(value);
  kinds_.push_back(kind);
  return static_cast<Number>(values_.size() - 1);
}

Program::Number Program::numberOf(Element& variable) {
  const auto [number, isNew] = numbering_.add(variable);
  if (!isNew) return number;
  if (outer_) {
    const Number known = outer_->numbering_.find(variable);
    if (known != Numbering::none) return add(outer_->values_[known], Kind::Variable);
  }
  const LatticeType& type = typeOf(variable);
  return add(type ? type->getBottom() : LatticeValue(), Kind::Variable);
}

Program::Number Program::newTemporary() {
  if (usedTemporaries_ == temporaries_.size()) temporaries_.push_back(add({}, Kind::Temporary));
  return temporaries_[usedTemporaries_++];
}

// ---------------------------------------------------------------- evaluation
bool Program::evaluate(Number equation) {
  const Rule &rule = rules_[equation], &next = rules_[equation + 1];
  const auto operations = operationsOf(rule, next);
  for (const Operation& operation : operations) compute(operation);
  const bool isWhole = operations.empty() || operations.front().code != Code::Place;
  const LatticeValue& value = values_[rule.target];
  const LatticeValue** sumEnd = room_.data();
  const auto add = [&](const LatticeValue& more) {
    if (more && !(isWhole && more == value)) *sumEnd++ = &more;
  };
  for (const Number summand : summandsOf(rule, next)) add(values_[summand]);
  std::size_t joined = joined_;
  while (joined < constants_.size() && constants_[joined].equation == equation)
    add(constants_[joined++].value);
  const Sum sum{room_.data(), sumEnd};
  const bool hasGrown =
      isWhole ? !sum.empty() && join(equation, sum) : joinParts(rule.target, sum, operations);
  for (const Operation& operation : operations)
    if (operation.code != Code::Place) values_[operation.result] = {};
  if (joined != joined_) letGo(joined);
  return hasGrown;
}

void Program::letGo(std::size_t joined) {
  while (joined_ < joined) constants_[joined_++].value = {};
  if (joined_ < constants_.size()) return;
  constants_ = std::vector<Constant>();
  joined_ = 0;
}

LatticeValue Program::evaluate(const Term& term) const {
  const Number known = term.get() ? numbering_.find(*term.get()) : Numbering::none;
  if (known != Numbering::none) return values_[known];
  Program program(this);
  program.compile(term, Stage::Operand);
  for (const Operation& operation : program.operations_) program.compute(operation);
  return program.stack_.empty() ? LatticeValue() : program.values_[program.stack_.front()];
}

void Program::compute(const Operation& operation) {
  if (operation.code == Code::Place) return;
  LatticeValue result;
  for (const Number operand : operandsOf(operation)) {
    const LatticeValue& next = values_[operand];
    if (!result)
      result = next;
    else if (next)
      result = operation.code == Code::Meet ? result.meet(next) : result.join(next);
  }
  if (operation.code == Code::Field) {
    result = Struct{result}.at(StructRef(operation.term)->getField());
  } else if (operation.code == Code::Range) {
    const IndexRef range{operation.term};
    result = IndexableValue{result}.at(range->getStartIndex(), range->getEndIndex());
  } else if (operation.code == Code::Prune) {
    const Prune prune{operation.term};
    const auto& path = prune->getField();
    result = Struct{result}.prune({path.begin(), path.end()});
  }
  values_[operation.result] = std::move(result);
}

/// A value that others have as well is left to them; where one summand is all that the target
/// becomes, they share it, unless it changes with its parts. So may a temporary, as one of them.
bool Program::join(Number equation, Sum sum) {
  const Rule &rule = rules_[equation], &next = rules_[equation + 1];
  LatticeValue& value = values_[rule.target];
  if (isHeldAlone(value)) return joinAllInto(value, sum);
  const auto summands = summandsOf(rule, next);
  const auto isOfParts = [this](Number number) { return kinds_[number] == Kind::VariableOfParts; };
  const bool mayShare = !isOfParts(rule.target) && operationsOf(rule, next).empty() &&
                        std::none_of(summands.begin(), summands.end(), isOfParts);
  const bool isFirst = !value;
  if (isFirst) value = mayShare ? *sum.front() : sum.front()->clone();
  return joinAllInto(value, sum, mayShare ? Sharing::Allowed : Sharing::None) || isFirst;
}

/// The place that the left side names. Empty places on the way become bottom.
Ref Program::placeOf(Number variable, std::span<const Operation> operations) {
  Ref place(&values_[variable]);
  for (const Operation& operation : operations) {
    if (operation.code != Code::Place) break;
    Element& selection = *operation.term.get();
    if (is<StructRef>(selection)) {
      const auto& ref = as<StructRef>(selection);
      place = place.ref(ref.getField(), ref.getExpr()->getType()->getBottom());
    } else {
      const auto& ref = as<IndexRef>(selection);
      place =
          place.ref(ref.getStartIndex(), ref.getEndIndex(), ref.getExpr()->getType()->getBottom());
    }
  }
  return place;
}

bool Program::joinParts(Number variable, Sum sum, std::span<const Operation> operations) {
  Ref place = placeOf(variable, operations);
  bool hasGrown = false;
  for (const LatticeValue* const more : sum)
    hasGrown |= place.update(*more, [](Ref& part, const LatticeValue& given) {
      LatticeValue value = part.deref();
      if (!value)
        value = given.clone();
      else if (!joinInto(value, given))
        return false;
      part.assign(value);
      return true;
    });
  return hasGrown;
}

}  // namespace torvan::slicer
