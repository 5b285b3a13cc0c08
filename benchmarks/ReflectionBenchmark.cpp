#include <torvan/datamodel.h>
#include <torvan/datamodel/ValueTypes.h>

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

/// Bits in a value; the floor goes over plain words of the same content.
void addBits(std::size_t size) {
  Random random(size);
  std::vector<std::uint64_t> words(size / 64);
  for (std::uint64_t& word : words) word = random();
  const Value bits = BitSet(words.begin(), words.end()), equal = bits;

  const auto hashOf = [size](const std::vector<std::uint64_t>& content) {
    std::uint64_t hash = 0;
    for (const std::uint64_t word : content) hash = orb::zero::hashCombine(hash, word);
    return orb::zero::hashCombine(size, hash);
  };
  addCase("value.hash of bits", size, "ours", [=](benchmark::State& state) {
    check(state, bits.hash() == hashOf(words));
    measure(state, 1, [&] { benchmark::DoNotOptimize(bits.hash()); });
  });
  addCase("value.hash of bits", size, "floor", [=](benchmark::State& state) {
    measure(state, 1, [&] { benchmark::DoNotOptimize(hashOf(words)); });
  });
  addCase("value.equal bits", size, "ours", [=](benchmark::State& state) {
    check(state, bits == equal);
    measure(state, 1, [&] { benchmark::DoNotOptimize(bits == equal); });
  });
  addCase("value.equal bits", size, "floor", [=, same = words](benchmark::State& state) {
    measure(state, 1, [&] {
      bool isEqual = true;
      for (std::size_t i = 0; i < words.size(); ++i) isEqual &= words[i] == same[i];
      benchmark::DoNotOptimize(isEqual);
    });
  });
}

}  // namespace

void addReflectionCases() {
  addBits(64);
  addBits(4096);
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
