#include <torvan/datamodel/Struct.h>

#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/StructType.h>
#include <torvan/datamodel/impl/OrderFold.h>

namespace torvan::datamodel {
namespace {

const auto& fieldsOf(const Struct::Impl& value) {
  return StructType { value.getType() } -> getFields();
}

Struct makeLike(const Struct::Impl& value) {
  Struct::Builder builder(value.getModel());
  builder->setType(value.getType());
  return builder.create();
}

/// A new record like this one whose every field is what `operation` makes of the field.
template <class Operation>
Struct mapFields(const Struct::Impl& value, Operation operation) {
  const Struct result = makeLike(value);
  for (const auto& [name, field] : fieldsOf(value)) result->store(name, operation(name));
  return result;
}

/// Reads a field of the right operand: one that its type lacks reads as the left one's bottom.
class RightOperand {
 public:
  RightOperand(const Struct::Impl& left, const LatticeValue& right)
      : left_(StructType{left.getType()}), right_(right), type_(right_->getType()) {}

  LatticeValue at(const std::string& name) const {
    LatticeValue value;
    if (!type_ || type_->getFields().contains(name)) value = right_->at(name);
    return value ? value : left_.at(name)->getBottom();
  }

 private:
  StructType left_;
  Struct right_;
  StructType type_;
};

}  // namespace

LatticeValue Struct::Impl::join(const LatticeValue& other) const {
  const RightOperand right(*this, other);
  return mapFields(*this, [&](const std::string& name) { return at(name).join(right.at(name)); });
}

LatticeValue Struct::Impl::meet(const LatticeValue& other) const {
  const RightOperand right(*this, other);
  return mapFields(*this, [&](const std::string& name) { return at(name).meet(right.at(name)); });
}

LatticeValue Struct::Impl::clone() const {
  return mapFields(*this, [&](const std::string& name) { return at(name).clone(); });
}

boolean3 Struct::Impl::le(const LatticeValue& other) const {
  const RightOperand right(*this, other);
  OrderFold order;
  for (const auto& [name, field] : fieldsOf(*this)) {
    order.add(at(name).le(right.at(name)));
    if (order.isSettled()) break;
  }
  return order.result();
}

bool Struct::Impl::eq(const LatticeValue& other) const {
  const RightOperand right(*this, other);
  for (const auto& [name, field] : fieldsOf(*this))
    if (!at(name).eq(right.at(name))) return false;
  return true;
}

LatticeValue Struct::Impl::at(const std::string& name) const {
  if (const FieldElem::Impl* const field = values_.find(name)) return field->getValue();
  const LatticeType type = StructType{getType()}.at(name);
  return type ? type->getBottom() : LatticeValue();
}

Ref Struct::Impl::ref(const std::string& name) {
  if (!values_.contains(name)) {
    const LatticeValue bottom = at(name);
    store(name, bottom ? bottom.clone() : LatticeValue());
  }
  return values_.find(name)->ref();
}

Struct Struct::Impl::prune(const std::vector<std::string>& path) const {
  const Struct result = makeLike(*this);
  for (const auto& [name, field] : values_)
    if (path.empty() || name != path.front())
      result->store(name, field->hasValue() ? field->getValue().clone() : LatticeValue());
  if (path.size() > 1) {
    const Struct inner{at(path.front())};
    result->store(path.front(), inner.prune({path.begin() + 1, path.end()}));
  }
  return result;
}

void Struct::Impl::store(const std::string& name, const LatticeValue& value) {
  if (values_.contains(name)) orb::zero::raise("UniquenessConstraint");
  FieldElem::Builder field(getModel());
  field->basicSetName(name);
  field->setValue(value);
  values_.insert(field.create());
}

}  // namespace torvan::datamodel
