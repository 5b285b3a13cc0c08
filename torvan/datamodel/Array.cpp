#include <torvan/datamodel/Array.h>

#include <utility>

#include <orb/zero/Transaction.h>
#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/TypeFactory.h>
#include <torvan/datamodel/ValueFactory.h>
#include <torvan/datamodel/impl/Nesting.h>
#include <torvan/datamodel/impl/OrderFold.h>

namespace torvan::datamodel {
namespace {

ArrayElem makeElem(orb::zero::Model::Impl& model, std::uint16_t index, const LatticeValue& value) {
  return ArrayElem::Impl::make(model, [&](ArrayElem::Impl& made) {
    made.basicSetIndex(index);
    made.basicSetValue(value);
  });
}

/// The value at an index that is not stored, to be computed with: the bottom of the array's type.
/// One that lacks the index itself would be read for ever.
const LatticeValue& missing(const Array::Impl& array, std::uint16_t index) {
  const LatticeValue& bottom = array.getType()->getBottom();
  if (bottom && bottom.get()->getMetaClass().isKindOf(Array::metaClass()) &&
      !Array(bottom)->getValues().contains(index))
    orb::zero::raise("InvalidValue");
  return bottom;
}

/// Reads the elements of an array, which are asked for in ascending order of their indices.
class ElementReader {
 public:
  explicit ElementReader(const Array::Impl& array)
      : array_(array), next_(array.getValues().begin()), end_(array.getValues().end()) {}

  const LatticeValue& at(std::uint16_t index) {
    while (next_ != end_ && next_->first < index) ++next_;
    if (next_ != end_ && next_->first == index) return (next_++)->second->getValue();
    return missing(array_, index);
  }

 private:
  const Array::Impl& array_;
  decltype(std::declval<Array::Impl>().getValues().begin()) next_, end_;
};

/// Visits the indices of the array's type with the values of both arrays, as long as `visit` is
/// true.
template <class Visit>
bool forIndices(const Array::Impl& array, const LatticeValue& other, Visit visit) {
  const Nesting nesting;
  const unsigned size = ArrayType(array.getType())->getNumElems();
  const Array right{other};
  ElementReader leftElements(array), rightElements(*right.operator->());
  for (unsigned i = 1; i <= size; ++i) {
    const auto index = static_cast<std::uint16_t>(i);
    if (!visit(index, leftElements.at(index), rightElements.at(index))) return false;
  }
  return true;
}

/// A new array like this one whose every element is what `operation` makes of the elements of both.
template <class Operation>
Array combine(const Array::Impl& array, const LatticeValue& other, Operation operation) {
  orb::zero::Transaction unit(array.getModel());
  Array result = Array::Impl::make(array.model(),
                                   [&](Array::Impl& made) { made.basicSetType(array.getType()); });
  forIndices(array, other, [&](std::uint16_t index, const auto& left, const auto& right) {
    result->append(index, operation(left, right));
    return true;
  });
  unit.commit();
  return result;
}

}  // namespace

LatticeValue Array::Impl::join(const LatticeValue& other) const {
  return combine(*this, other, [](const auto& a, const auto& b) { return a.join(b); });
}

LatticeValue Array::Impl::meet(const LatticeValue& other) const {
  return combine(*this, other, [](const auto& a, const auto& b) { return a.meet(b); });
}

LatticeValue Array::Impl::clone() const {
  return combine(*this, This(), [](const auto& a, const auto&) { return a.clone(); });
}

boolean3 Array::Impl::le(const LatticeValue& other) const {
  OrderFold order;
  forIndices(*this, other, [&](std::uint16_t, const auto& left, const auto& right) {
    order.add(left.le(right));
    return !order.isSettled();
  });
  return order.result();
}

bool Array::Impl::eq(const LatticeValue& other) const {
  return forIndices(*this, other, [](std::uint16_t, const auto& left, const auto& right) {
    return left.eq(right);
  });
}

LatticeValue Array::Impl::read(std::uint16_t index) const {
  if (const ArrayElem::Impl* const element = values_.find(index)) return element->getValue();
  return hasType() ? getType()->getBottom() : LatticeValue();
}

LatticeValue Array::Impl::at(std::uint16_t start, std::uint16_t end) const {
  const std::uint16_t count = countOf(start, end);
  if (count == 1) return read(start);

  LatticeType elemType;  // before anything is made, as an array without a type may have none
  if (count == 0)
    elemType = hasType() ? ArrayType(getType())->getElemType() : LatticeType();
  else if (const LatticeValue first = read(start))
    elemType = first->getType();
  const orb::zero::Batch batch(*this);
  Array result = Array::Builder(getModel()).create();
  for (unsigned k = 1; k <= count; ++k)
    result->store(static_cast<std::uint16_t>(k), read(static_cast<std::uint16_t>(start + k - 1)));

  ValueFactory values(getModel());
  TypeFactory types(getModel());
  types.valueFactory(&values);
  result->setType(types.createArrayType("", elemType, count));
  return result;
}

Ref Array::Impl::ref(std::uint16_t start, std::uint16_t end) {
  const std::uint16_t count = countOf(start, end);
  const auto indexAt = [=](unsigned k) { return static_cast<std::uint16_t>(start + k); };
  unsigned stored = 0;
  while (stored < count && values_.contains(indexAt(stored))) ++stored;
  if (stored < count) {
    checkNoProxy();
    const orb::zero::Batch batch(*this);
    for (; stored < count; ++stored) {
      const std::uint16_t index = indexAt(stored);
      if (values_.contains(index)) continue;
      const LatticeValue bottom = read(index);
      store(index, bottom ? bottom.clone() : LatticeValue());
    }
  }
  std::vector<LatticeValue*> slots;
  slots.reserve(count);
  for (unsigned k = 0; k < count; ++k) slots.push_back(values_[indexAt(k)].ref());
  return count == 1 ? Ref(slots.front()) : Ref(slots);
}

void Array::Impl::store(std::uint16_t index, const LatticeValue& value) {
  checkNoProxy();
  checkCompatibleModel(value ? value.get() : nullptr);
  if (values_.contains(index)) orb::zero::raise("UniquenessConstraint");
  const orb::zero::Batch batch(*this);
  values_.insert(makeElem(model(), index, value ? value : LatticeValue()));
}

void Array::Impl::append(std::uint16_t index, const LatticeValue& value) {
  values_.append(*makeElem(model(), index, value).get());
}

}  // namespace torvan::datamodel
