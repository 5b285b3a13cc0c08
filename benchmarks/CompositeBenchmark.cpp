#include <torvan/datamodel.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

using Words = std::vector<unsigned long>;  // one per part

/// About so many parts are alive before all results are let go.
std::size_t resultsOf(std::size_t parts) { return std::max<std::size_t>(4, 4096 / parts); }

Words randomWords(std::size_t parts, Random::result_type seed) {
  Random random(seed);
  Words words(parts);
  std::generate(words.begin(), words.end(), std::ref(random));
  return words;
}

/// Values with a power set of 64 bits per part.
class OurComposites {
 public:
  void join() { benchmark::DoNotOptimize(a_.join(b_)); }
  void letGo() { session_.model().reclaim(); }
  bool eq() const { return a_.eq(b_); }

 protected:
  std::vector<LatticeValue> makeParts(const Words& words) {
    std::vector<LatticeValue> parts;
    for (const unsigned long word : words)
      parts.push_back(session_.valueFactory()->createPowerSet(partType_, BitSet(64, word)));
    return parts;
  }
  static unsigned long wordOf(const LatticeValue& part) {
    return PowerSet { part } -> getValue().to_ulong();
  }

  Session session_;
  PowerSetType partType_ = session_.typeFactory()->createPowerSetType("P", 64);
  LatticeValue a_, b_;
};

class OurStructs : public OurComposites {
 public:
  OurStructs(const Words& a, const Words& b) {
    for (std::size_t i = 0; i < a.size(); ++i) names_.push_back("field" + std::to_string(i));
    const StructType type = session_.typeFactory()->createStructType(
        "S", names_, std::vector<LatticeType>(a.size(), partType_));
    a_ = session_.valueFactory()->createStruct(type, names_, makeParts(a));
    b_ = session_.valueFactory()->createStruct(type, names_, makeParts(b));
  }
  Words joined() {
    const Struct result{a_.join(b_)};
    Words words;
    for (const std::string& name : names_) words.push_back(wordOf(result.at(name)));
    return words;
  }

 private:
  std::vector<std::string> names_;
};

class OurArrays : public OurComposites {
 public:
  OurArrays(const Words& a, const Words& b) : indices_(a.size()) {
    std::iota(indices_.begin(), indices_.end(), std::uint16_t{1});
    const ArrayType type = session_.typeFactory()->createArrayType(
        "A", partType_, static_cast<std::uint16_t>(a.size()));
    a_ = session_.valueFactory()->createArray(type, indices_, makeParts(a));
    b_ = session_.valueFactory()->createArray(type, indices_, makeParts(b));
  }
  Words joined() {
    const Array result{a_.join(b_)};
    Words words;
    for (const std::uint16_t index : indices_) words.push_back(wordOf(result.at(index)));
    return words;
  }

 private:
  std::vector<std::uint16_t> indices_;
};

/// Raw memory in blocks of so many words: one per part, or one for all.
template <bool flat>
class RawComposites {
 public:
  RawComposites(const Words& a, const Words& b)
      : blockSize_(flat ? a.size() : 1), a_(blocksOf(a)), b_(blocksOf(b)) {
    results_.reserve(resultsOf(a.size()) * a_.size());
  }

  void join() {
    for (std::size_t block = 0; block < a_.size(); ++block) {
      Block result = newBlock();
      for (std::size_t i = 0; i < blockSize_; ++i) result[i] = a_[block][i] | b_[block][i];
      results_.push_back(std::move(result));
    }
  }
  void letGo() { results_.clear(); }
  bool eq() const {
    for (std::size_t block = 0; block < a_.size(); ++block)
      if (!std::equal(a_[block].get(), a_[block].get() + blockSize_, b_[block].get())) return false;
    return true;
  }
  Words joined() {
    join();
    Words words;
    for (const Block& block : results_)
      words.insert(words.end(), block.get(), block.get() + blockSize_);
    return words;
  }

 private:
  struct Free {
    void operator()(void* memory) const noexcept { std::free(memory); }
  };
  using Block = std::unique_ptr<unsigned long[], Free>;

  Block newBlock() const {
    return Block(static_cast<unsigned long*>(std::malloc(blockSize_ * sizeof(unsigned long))));
  }
  std::vector<Block> blocksOf(const Words& words) const {
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < words.size(); i += blockSize_) {
      blocks.push_back(newBlock());
      std::copy_n(words.data() + i, blockSize_, blocks.back().get());
    }
    return blocks;
  }

  std::size_t blockSize_;
  std::vector<Block> a_, b_, results_;
};

template <class Composites>
void addSide(const std::string& kind, std::size_t parts, const std::string& side) {
  addCase(kind + ".join", parts, side, [parts](benchmark::State& state) {
    const Words a = randomWords(parts, 1), b = randomWords(parts, 2);
    Words right;
    for (std::size_t i = 0; i < parts; ++i) right.push_back(a[i] | b[i]);
    Composites composites(a, b);
    check(state, composites.joined() == right);
    composites.letGo();
    const std::size_t results = resultsOf(parts);
    measure(state, results, [&] {
      for (std::size_t i = 0; i < results; ++i) composites.join();
      composites.letGo();
    });
  });
  addCase(kind + ".eq", parts, side, [parts](benchmark::State& state) {
    const Words a = randomWords(parts, 1);
    Words other = a;
    other.back() = ~other.back();
    check(state, !Composites(a, other).eq());
    const Composites composites(a, a);
    check(state, composites.eq());
    measure(state, 1, [&] { benchmark::DoNotOptimize(composites.eq()); });
  });
}

template <class Ours>
void addKind(const std::string& kind, std::size_t parts) {
  addSide<Ours>(kind, parts, "ours");
  addSide<RawComposites<false>>(kind, parts, "floor copies");
  addSide<RawComposites<true>>(kind, parts, "floor flat");
}

}  // namespace

void addCompositeCases() {
  addKind<OurStructs>("struct", 16);
  addKind<OurArrays>("array", 1000);
}

}  // namespace torvan::datamodel::benchmarks
