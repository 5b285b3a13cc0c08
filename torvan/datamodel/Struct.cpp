#include <torvan/datamodel/Struct.h>

#include <utility>

#include <orb/zero/Hash.h>
#include <orb/zero/Transaction.h>
#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/StructType.h>
#include <torvan/datamodel/impl/Nesting.h>
#include <torvan/datamodel/impl/OrderFold.h>

namespace torvan::datamodel {
namespace {

FieldElem makeElem(orb::zero::Model::Impl& model, const std::string& name,
                   const LatticeValue& value) {
  return FieldElem::Impl::make(model, [&](FieldElem::Impl& made) {
    made.basicSetName(name);
    made.basicSetValue(value);
  });
}

Struct makeLike(const Struct::Impl& value) {
  return Struct::Impl::make(value.model(),
                            [&](Struct::Impl& made) { made.basicSetType(value.getType()); });
}

/// Reads the fields of a record, which are asked for in ascending order of their names.
class FieldReader {
 public:
  FieldReader(const Struct::Impl& record, const StructType& readFor)
      : type_(record.getType()),
        isOther_(type_ && type_ != readFor),
        next_(record.getValues().begin()),
        end_(record.getValues().end()) {}

  /// The stored value, or the bottom of the field's type: of the record's own, or of the type that
  /// is read for, if the record's lacks the field.
  const LatticeValue& at(const std::string& name, const FieldType& field) {
    const FieldElem* const stored = find(name);
    const FieldType::Impl* const own = isOther_ ? type_->getFields().find(name) : nullptr;
    if (stored && (!isOther_ || own)) return (*stored)->getValue();
    return (own && own->hasElemType() ? own : field.operator->())->getElemType()->getBottom();
  }

 private:
  /// Null when there is none.
  const FieldElem* find(const std::string& name) {
    while (next_ != end_) {
      if (orb::zero::isSameText(next_->first, name)) return &(next_++)->second;
      if (next_->first > name) break;
      ++next_;
    }
    return nullptr;
  }

  StructType type_;
  bool isOther_;  // than the one that is read for
  decltype(std::declval<Struct::Impl>().getValues().begin()) next_, end_;
};

/// Visits the fields of the record's type with the values of both records, as long as `visit` is
/// true.
template <class Visit>
bool forFields(const Struct::Impl& record, const LatticeValue& other, Visit visit) {
  const Nesting nesting;
  const StructType type{record.getType()};
  const Struct right{other};
  FieldReader leftFields(record, type), rightFields(*right.operator->(), type);
  for (const auto& [name, field] : type->getFields())
    if (!visit(name, leftFields.at(name, field), rightFields.at(name, field))) return false;
  return true;
}

/// A new record like this one whose every field is what `operation` makes of the fields of both.
template <class Operation>
Struct combine(const Struct::Impl& record, const LatticeValue& other, Operation operation) {
  orb::zero::Transaction unit(record.getModel());
  Struct result = makeLike(record);
  forFields(record, other, [&](const auto& name, const auto& left, const auto& right) {
    result->append(name, operation(left, right));
    return true;
  });
  unit.commit();
  return result;
}

}  // namespace

LatticeValue Struct::Impl::join(const LatticeValue& other) const {
  return combine(*this, other, [](const auto& a, const auto& b) { return a.join(b); });
}

LatticeValue Struct::Impl::meet(const LatticeValue& other) const {
  return combine(*this, other, [](const auto& a, const auto& b) { return a.meet(b); });
}

LatticeValue Struct::Impl::clone() const {
  return combine(*this, This(), [](const auto& a, const auto&) { return a.clone(); });
}

boolean3 Struct::Impl::le(const LatticeValue& other) const {
  OrderFold order;
  forFields(*this, other, [&](const auto&, const auto& left, const auto& right) {
    order.add(left.le(right));
    return !order.isSettled();
  });
  return order.result();
}

bool Struct::Impl::eq(const LatticeValue& other) const {
  return forFields(*this, other,
                   [](const auto&, const auto& left, const auto& right) { return left.eq(right); });
}

LatticeValue Struct::Impl::at(const std::string& name) const {
  if (const FieldElem::Impl* const field = values_.find(name)) return field->getValue();
  const StructType type{getType()};
  const LatticeType fieldType = type ? type.at(name) : LatticeType();
  return fieldType ? fieldType->getBottom() : LatticeValue();
}

Ref Struct::Impl::ref(const std::string& name) {
  if (!values_.contains(name)) {
    checkNoProxy();
    const orb::zero::Batch batch(*this);
    const LatticeValue bottom = at(name);
    store(name, bottom ? bottom.clone() : LatticeValue());
  }
  return values_[name].ref();  // a listener may have taken it away
}

Struct Struct::Impl::prune(const std::vector<std::string>& path) const {
  const Nesting nesting;
  orb::zero::Transaction unit(getModel());
  Struct result = makeLike(*this);
  for (const auto& [name, field] : values_)
    if (path.empty() || name != path.front())
      result->store(name, field->hasValue() ? field->getValue().clone() : LatticeValue());
  if (path.size() > 1) {
    const Struct inner{at(path.front())};
    result->store(path.front(), inner.prune({path.begin() + 1, path.end()}));
  }
  unit.commit();
  return result;
}

void Struct::Impl::store(const std::string& name, const LatticeValue& value) {
  checkNoProxy();
  checkCompatibleModel(value ? value.get() : nullptr);
  if (values_.contains(name)) orb::zero::raise("UniquenessConstraint");
  const orb::zero::Batch batch(*this);
  values_.insert(makeElem(model(), name, value ? value : LatticeValue()));
}

void Struct::Impl::append(const std::string& name, const LatticeValue& value) {
  values_.append(*makeElem(model(), name, value).get());
}

}  // namespace torvan::datamodel
