#include <torvan/datamodel.h>
#include <torvan/datamodel/ValueTypes.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

using orb::zero::Model;
using orb::zero::Value;

constexpr std::size_t reads = 1000;

/// Array types with a size and an element type.
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

  Model model = Model::create();
  std::vector<ArrayType> all;
};

std::uint64_t numberOf(std::uint16_t number) { return number; }
std::uint64_t numberOf(const LatticeType& type) { return static_cast<bool>(type); }

/// Reads of all types in turn.
template <class Read>
std::function<Side()> readBy(Read read) {
  return [=] {
    const auto types = std::make_shared<Types>();
    return Side{.run =
                    [=] {
                      for (const ArrayType& type : types->all) benchmark::DoNotOptimize(read(type));
                    },
                .result =
                    [=] {
                      std::uint64_t sum = 0;
                      for (const ArrayType& type : types->all) sum += numberOf(read(type));
                      return sum;
                    }};
  };
}

/// Ours reads by reflection, the other side by the getter.
template <class Reflective, class Getter>
Case reading(const char* name, Target target, Reflective reflective, Getter getter) {
  return {.name = name,
          .size = reads,
          .items = reads,
          .targets = {std::move(target)},
          .sides = {{"ours", readBy(reflective)}, {"raw", readBy(getter)}}};
}

template <class Compute>
Side computing(std::size_t times, Compute compute) {
  return {.run =
              [=] {
                for (std::size_t i = 0; i < times; ++i) benchmark::DoNotOptimize(compute());
              },
          .result = [=] { return std::uint64_t{compute()}; }};
}

/// Bits in a value; the other side goes over plain words of the same content.
void addBits(Cases& cases, std::size_t size, std::vector<Target> targets) {
  Random random(size);
  std::vector<std::uint64_t> words(size / 64);
  for (std::uint64_t& word : words) word = random();
  const Value bits = BitSet(words.begin(), words.end()), same = bits;
  const std::size_t times = (std::size_t{1} << 20) / size;

  const auto hashOfWords = [=] {
    std::uint64_t hash = 0;
    for (const std::uint64_t word : words) hash = orb::zero::hashCombine(hash, word);
    return orb::zero::hashCombine(size, hash);
  };
  const auto compareWords = [=, others = words] {
    return std::memcmp(words.data(), others.data(), words.size() * sizeof words[0]) == 0;
  };
  const auto add = [&](const char* name, auto ours, auto raw) {
    cases.push_back({.name = name,
                     .size = size,
                     .items = times,
                     .targets = targets,
                     .sides = {{"ours", [=] { return computing(times, ours); }},
                               {"raw", [=] { return computing(times, raw); }}}});
  };
  add(
      "value.hash of bits", [=] { return bits.hash(); }, hashOfWords);
  add(
      "value.equal bits", [=] { return bits == same; }, compareWords);
}

}  // namespace

void addReflectionCases(Cases& cases) {
  addBits(cases, 64, {});
  addBits(cases, 4096, {timesOf(1.5, "raw")});
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
  const Target byDescriptor = timesOf(2, "raw", 3);
  cases.push_back(reading("read.number by descriptor", byDescriptor, numberByDescriptor, number));
  cases.push_back(reading("read.number by name", atMost(8), numberByName, number));
  cases.push_back(
      reading("read.reference by descriptor", byDescriptor, referenceByDescriptor, reference));
}

}  // namespace torvan::datamodel::benchmarks
