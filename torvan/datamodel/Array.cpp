#include <torvan/datamodel/Array.h>

#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/TypeFactory.h>
#include <torvan/datamodel/ValueFactory.h>
#include <torvan/datamodel/impl/OrderFold.h>

namespace torvan::datamodel {
namespace {

/// An index of an operand, to be computed with. A missing one reads as the bottom of the operand's
/// type; a bottom that lacks the index itself would be read for ever.
LatticeValue part(const Array::Impl& array, std::uint16_t index) {
  if (const ArrayElem::Impl* const element = array.getValues().find(index))
    return element->getValue();
  LatticeValue bottom = array.getType()->getBottom();
  if (bottom && bottom.get()->getMetaClass().isKindOf(Array::metaClass()) &&
      !Array { bottom } -> getValues().contains(index))
    orb::zero::raise("InvalidValue");
  return bottom;
}

/// Calls `visit` with the indices of the array's type while it returns true.
template <class Visit>
bool forIndices(const Array::Impl& array, Visit visit) {
  const unsigned size = ArrayType { array.getType() } -> getNumElems();
  for (unsigned index = 1; index <= size; ++index)
    if (!visit(static_cast<std::uint16_t>(index))) return false;
  return true;
}

/// A new array like this one whose every element is what `operation` makes of the index.
template <class Operation>
Array mapIndices(const Array::Impl& array, Operation operation) {
  Array::Builder builder(array.getModel());
  builder->setType(array.getType());
  Array result = builder.create();
  forIndices(array, [&](std::uint16_t index) {
    result->store(index, operation(index));
    return true;
  });
  return result;
}

/// The right operand of a lattice operation.
class RightOperand {
 public:
  explicit RightOperand(const LatticeValue& value) : array_(value), impl_(*array_.operator->()) {}
  LatticeValue at(std::uint16_t index) const { return part(impl_, index); }

 private:
  Array array_;
  const Array::Impl& impl_;
};

/// Number of indices of a range; a range that ends before it starts is empty.
std::uint16_t countOf(std::uint16_t start, std::uint16_t end) {
  if (end == 0) return 1;
  return static_cast<std::uint16_t>(end < start ? 0 : end - start + 1);
}

}  // namespace

LatticeValue Array::Impl::join(const LatticeValue& other) const {
  const RightOperand right(other);
  return mapIndices(*this, [&](std::uint16_t i) { return part(*this, i).join(right.at(i)); });
}

LatticeValue Array::Impl::meet(const LatticeValue& other) const {
  const RightOperand right(other);
  return mapIndices(*this, [&](std::uint16_t i) { return part(*this, i).meet(right.at(i)); });
}

LatticeValue Array::Impl::clone() const {
  return mapIndices(*this, [&](std::uint16_t i) { return part(*this, i).clone(); });
}

boolean3 Array::Impl::le(const LatticeValue& other) const {
  const RightOperand right(other);
  OrderFold order;
  forIndices(*this, [&](std::uint16_t i) {
    order.add(part(*this, i).le(right.at(i)));
    return !order.isSettled();
  });
  return order.result();
}

bool Array::Impl::eq(const LatticeValue& other) const {
  const RightOperand right(other);
  return forIndices(*this, [&](std::uint16_t i) { return part(*this, i).eq(right.at(i)); });
}

LatticeValue Array::Impl::read(std::uint16_t index) const {
  if (const ArrayElem::Impl* const element = values_.find(index)) return element->getValue();
  return getType()->getBottom();
}

LatticeValue Array::Impl::at(std::uint16_t start, std::uint16_t end) const {
  const std::uint16_t count = countOf(start, end);
  if (count == 1) return read(start);

  Array result = Array::Builder(getModel()).create();
  LatticeType elemType;
  if (count == 0) elemType = ArrayType {
      getType()
      } -> getElemType();
  else if (const LatticeValue first = read(start))
    elemType = first->getType();
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
  std::vector<LatticeValue*> slots;
  for (unsigned k = 0; k < count; ++k) {
    const auto index = static_cast<std::uint16_t>(start + k);
    if (!values_.contains(index)) store(index, part(*this, index).clone());
    slots.push_back(values_.find(index)->ref());
  }
  return count == 1 ? Ref(slots.front()) : Ref(slots);
}

void Array::Impl::store(std::uint16_t index, const LatticeValue& value) {
  if (values_.contains(index)) orb::zero::raise("UniquenessConstraint");
  ArrayElem::Builder element(getModel());
  element->basicSetIndex(index);
  element->setValue(value);
  values_.insert(element.create());
}

}  // namespace torvan::datamodel
