#include <torvan/datamodel/ValueFactory.h>

#include <algorithm>
#include <cassert>
#include <utility>

namespace torvan::datamodel {
namespace {

/// A composite value with a part per position of the two vectors.
template <class Value, class Type, class Key>
Value makeComposite(const orb::zero::Model& model, const Type& type, const std::vector<Key>& keys,
                    const std::vector<LatticeValue>& values) {
  assert(keys.size() == values.size());
  const orb::zero::Batch batch(model);
  typename Value::Builder builder(model);
  builder->setType(type);
  Value value = builder.create();
  for (std::size_t i = 0; i < std::min(keys.size(), values.size()); ++i)
    value->store(keys[i], values[i]);
  return value;
}

}  // namespace

ValueFactory::ValueFactory(orb::zero::Model model) : model_(std::move(model)) {}

PowerSet ValueFactory::createPowerSet(const PowerSetType& type, const BitSet& value) {
  return PowerSet::Impl::make(*model_.operator->(), [&](PowerSet::Impl& made) {
    made.setType(type);
    made.fill([&](Bits& bits) { bits.assign(value, made.model().pool()); });
  });
}

Struct ValueFactory::createStruct(const StructType& type, const std::vector<std::string>& names,
                                  const std::vector<LatticeValue>& values) {
  return makeComposite<Struct>(model_, type, names, values);
}

Array ValueFactory::createArray(const ArrayType& type, const std::vector<std::uint16_t>& indices,
                                const std::vector<LatticeValue>& values) {
  return makeComposite<Array>(model_, type, indices, values);
}

}  // namespace torvan::datamodel
