#include <torvan/datamodel/TypeFactory.h>

#include <algorithm>
#include <cassert>
#include <numeric>
#include <utility>

#include <torvan/datamodel/ValueFactory.h>

namespace torvan::datamodel {

TypeFactory::TypeFactory(orb::zero::Model model) : model_(std::move(model)) {}

ValueFactory& TypeFactory::values() const {
  if (!valueFactory_) orb::zero::raise("InvalidValue");
  return *valueFactory_;
}

PowerSetType TypeFactory::createPowerSetType(const std::string& name, std::uint16_t numElems) {
  const orb::zero::Batch batch(model_);
  PowerSetType::Builder builder(model_);
  builder->basicSetName(name);
  builder->basicSetNumElems(numElems);
  PowerSetType type = builder.create();

  const BitSet none(numElems);
  type->setTop(values().createPowerSet(type, ~none));
  type->setBottom(values().createPowerSet(type, none));
  return type;
}

PowerSetType TypeFactory::createPowerSetType(const std::string& name,
                                             const std::vector<std::string>& elements) {
  const orb::zero::Batch batch(model_);
  PowerSetType type = createPowerSetType(name, static_cast<std::uint16_t>(elements.size()));
  auto& universe = type->getUniverse();
  universe.reserve(elements.size());
  for (const std::string& element : elements) universe.add(element);
  return type;
}

StructType TypeFactory::createStructType(const std::string& name,
                                         const std::vector<std::string>& fieldNames,
                                         const std::vector<LatticeType>& fieldTypes) {
  assert(fieldNames.size() == fieldTypes.size());
  const orb::zero::Batch batch(model_);
  StructType::Builder builder(model_);
  builder->basicSetName(name);
  builder->basicSetNumElems(1);
  StructType type = builder.create();

  std::vector<LatticeValue> tops, bottoms;
  for (std::size_t i = 0; i < std::min(fieldNames.size(), fieldTypes.size()); ++i) {
    type->store(fieldNames[i], fieldTypes[i]);
    tops.push_back(fieldTypes[i] ? fieldTypes[i]->getTop() : LatticeValue());
    bottoms.push_back(fieldTypes[i] ? fieldTypes[i]->getBottom() : LatticeValue());
  }
  type->setTop(values().createStruct(type, fieldNames, tops));
  type->setBottom(values().createStruct(type, fieldNames, bottoms));
  return type;
}

ArrayType TypeFactory::createArrayType(const std::string& name, const LatticeType& elemType,
                                       std::uint16_t size) {
  const orb::zero::Batch batch(model_);
  ArrayType::Builder builder(model_);
  builder->basicSetName(name);
  builder->setElemType(elemType);
  builder->basicSetNumElems(size);
  ArrayType type = builder.create();

  std::vector<std::uint16_t> indices(size);
  std::iota(indices.begin(), indices.end(), std::uint16_t{1});
  const auto all = [&](const LatticeValue& value) {
    return values().createArray(type, indices, std::vector<LatticeValue>(size, value));
  };
  type->setTop(all(elemType ? elemType->getTop() : LatticeValue()));
  type->setBottom(all(elemType ? elemType->getBottom() : LatticeValue()));
  return type;
}

}  // namespace torvan::datamodel
