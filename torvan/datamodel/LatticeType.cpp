#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/FieldType.h>
#include <torvan/datamodel/PowerSetType.h>
#include <torvan/datamodel/StructType.h>
#include <torvan/datamodel/impl/Nesting.h>

namespace torvan::datamodel {
namespace {

/// Whether `other` is an element of the same class as this type.
template <class Type>
bool isOfKind(const LatticeType& other) {
  return other && other.get()->getMetaClass().isKindOf(Type::metaClass());
}

bool areCompatible(const LatticeType& a, const LatticeType& b) {
  const Nesting nesting;
  return a == b || (a && a.isCompatible(b));
}

}  // namespace

bool LatticeType::Impl::isReclaimable() const noexcept {
  if (!name_.empty() || outsideCount() != 0) return false;
  std::uint32_t ownSlots = 0;  // those of the values that only this type holds
  const auto countOwn = [&](const LatticeValue& value, std::uint32_t slots) {
    if (!value || !value.get()->isHeldOnlyBySlots(slots)) return;
    if (value->getType().get() == this) ++ownSlots;
  };
  if (top_ == bottom_) {
    countOwn(top_, 2);
  } else {
    countOwn(top_, 1);
    countOwn(bottom_, 1);
  }
  return isHeldOnlyBySlots(ownSlots);
}

bool PowerSetType::Impl::isCompatible(const LatticeType& other) const {
  if (other.get() == this) return true;
  return isOfKind<PowerSetType>(other) && getNumElems() == other->getNumElems();
}

bool ArrayType::Impl::isCompatible(const LatticeType& other) const {
  if (other.get() == this) return true;
  return isOfKind<ArrayType>(other) && getNumElems() == other->getNumElems() &&
         areCompatible(elemType_, ArrayType(other)->getElemType());
}

bool StructType::Impl::isCompatible(const LatticeType& other) const {
  if (other.get() == this) return true;
  if (!isOfKind<StructType>(other)) return false;
  const auto& others = StructType(other)->getFields();
  for (const auto& [name, field] : fields_)
    if (const FieldType::Impl* const match = others.find(name))
      if (!areCompatible(field->getElemType(), match->getElemType())) return false;
  return true;
}

LatticeType StructType::Impl::at(const std::string& name) const {
  const FieldType::Impl* const field = fields_.find(name);
  return field ? field->getElemType() : LatticeType();
}

void StructType::Impl::store(const std::string& name, const LatticeType& elemType) {
  checkNoProxy();
  checkCompatibleModel(elemType ? elemType.get() : nullptr);
  if (fields_.contains(name)) orb::zero::raise("UniquenessConstraint");
  const orb::zero::Batch batch(*this);
  FieldType::Builder field(getModel());
  field->basicSetName(name);
  field->setElemType(elemType);
  fields_.insert(field.create());
}

}  // namespace torvan::datamodel
