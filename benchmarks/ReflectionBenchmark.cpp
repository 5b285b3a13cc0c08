#include <torvan/datamodel.h>

#include <cstdint>
#include <string>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

using orb::zero::Model;
using orb::zero::Value;

constexpr std::size_t reads = 1000;

/// Array types with a size and an element type, read in turn.
struct Types {
  Types() {
    const auto elemType = PowerSetType::Builder(model).create();
    for (std::size_t i = 0; i < reads; ++i) {
      ArrayType::Builder builder(model);
      builder->setNumElems(static_cast<std::uint16_t>(i));
      builder->setElemType(elemType);
      all.push_back(builder.create());
    }
  }
  template <class Read>
  void run(benchmark::State& state, Read read) {
    measure(state, reads, [&] {
      for (const ArrayType& type : all) benchmark::DoNotOptimize(read(type));
    });
  }

  Model model = Model::create();
  std::vector<ArrayType> all;
};

/// `ours` reads by reflection, the floor by the getter.
template <class Read>
void addRead(const std::string& name, const std::string& side, Read read) {
  addCase(name, reads, side, [read](benchmark::State& state) { Types().run(state, read); });
}

}  // namespace

void addReflectionCases() {
  const auto number = [](const ArrayType& type) { return type->getNumElems(); };
  const auto numberByDescriptor = [](const ArrayType& type) {
    return type->getPropertyValue(LatticeType::numElems()).getValue<std::uint16_t>();
  };
  const auto numberByName = [](const ArrayType& type) {
    return type->getPropertyValue("numElems").getValue<std::uint16_t>();
  };
  const auto reference = [](const ArrayType& type) { return LatticeType(type->getElemType()); };
  const auto referenceByDescriptor = [](const ArrayType& type) {
    return type->getPropertyValue(ArrayType::elemType()).getValue<LatticeType>();
  };
  addRead("read.number by descriptor", "ours", numberByDescriptor);
  addRead("read.number by descriptor", "floor", number);
  addRead("read.number by name", "ours", numberByName);
  addRead("read.number by name", "floor", number);
  addRead("read.reference by descriptor", "ours", referenceByDescriptor);
  addRead("read.reference by descriptor", "floor", reference);
}

}  // namespace torvan::datamodel::benchmarks
