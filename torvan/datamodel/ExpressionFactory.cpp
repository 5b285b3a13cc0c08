#include <torvan/datamodel/ExpressionFactory.h>

#include <utility>

#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/StructType.h>

namespace torvan::datamodel {
namespace {

LatticeType typeOf(const Term& term) { return term ? term->getType() : LatticeType(); }

/// A join or a meet.
template <class X>
X makeOperation(const orb::zero::Model& model, const std::vector<Term>& terms) {
  return X::Impl::make(*model.operator->(), [&](typename X::Impl& made) {
    if (!terms.empty()) made.setType(typeOf(terms.front()));
    auto& operands = made.getOperands();
    operands.reserve(terms.size());
    for (const Term& term : terms) {
      if (term)
        operands.add(term);
      else
        operands.addEmpty();
    }
  });
}

}  // namespace

ExpressionFactory::ExpressionFactory(orb::zero::Model model) : model_(std::move(model)) {}

Variable ExpressionFactory::createVariable(const LatticeType& type, const std::string& name) {
  return Variable::Impl::make(*model_.operator->(), [&](Variable::Impl& made) {
    made.setType(type);
    made.basicSetName(name);
  });
}

Join ExpressionFactory::createJoin(const std::vector<Term>& terms) {
  return makeOperation<Join>(model_, terms);
}

Meet ExpressionFactory::createMeet(const std::vector<Term>& terms) {
  return makeOperation<Meet>(model_, terms);
}

StructRef ExpressionFactory::createStructRef(const LExpression& expr, const std::string& field) {
  StructRef::Builder builder(model_);
  builder->setExpr(expr);
  builder->basicSetField(field);
  if (const StructType type{typeOf(expr)}) builder->setType(type.at(field));
  return builder.create();
}

IndexRef ExpressionFactory::createIndexRef(const LExpression& expr, std::uint16_t start,
                                           std::optional<std::uint16_t> end) {
  IndexRef::Builder builder(model_);
  builder->setExpr(expr);
  builder->basicSetStartIndex(start);
  builder->basicSetEndIndex(end.value_or(start));
  const LatticeType type = typeOf(expr);
  if (type && type->getMetaClass().isKindOf(ArrayType::metaClass()))
    builder->setType(ArrayType(type)->getElemType());
  else
    builder->setType(type);
  return builder.create();
}

Conditional ExpressionFactory::createConditional(const Expression& ctrl, const Term& t,
                                                 const Term& f) {
  Conditional::Builder builder(model_);
  builder->setCtrlExpr(ctrl);
  builder->setOperandTrue(t);
  builder->setOperandFalse(f);
  builder->setType(typeOf(t));
  return builder.create();
}

Prune ExpressionFactory::createPrune(const Expression& expr,
                                     const std::vector<std::string>& fields) {
  Prune::Builder builder(model_);
  builder->setExpr(expr);
  for (const std::string& field : fields) builder->getField().add(field);
  return builder.create();
}

}  // namespace torvan::datamodel
