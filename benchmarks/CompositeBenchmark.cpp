#include <torvan/datamodel.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "benchmarks/Case.h"
#include "benchmarks/RawElement.h"

namespace torvan::datamodel::benchmarks {
namespace {

using Words = std::vector<unsigned long>;  // one per part

/// So many results are alive before all are let go: about as many parts.
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
    return PowerSet(part)->getValue().to_ulong();
  }

  Session session_;
  PowerSetType partType_ = session_.typeFactory()->createPowerSetType("P", 64);
  LatticeValue a_, b_;
};

class OurStructs : public OurComposites {
 public:
  static constexpr char name[] = "ours";
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
    for (const std::string& field : names_) words.push_back(wordOf(result.at(field)));
    return words;
  }

 private:
  std::vector<std::string> names_;
};

class OurArrays : public OurComposites {
 public:
  static constexpr char name[] = "ours";
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
  static constexpr const char* name = flat ? "flat" : "raw";
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
  /// The latest result.
  Words joined() const {
    Words words;
    for (auto block = results_.end() - static_cast<std::ptrdiff_t>(a_.size());
         block != results_.end(); ++block)
      words.insert(words.end(), block->get(), block->get() + blockSize_);
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

/// Plain objects as big as ours, two per part: one with the index and one with the words.
class ObjectComposites {
 public:
  static constexpr char name[] = "objects";
  ObjectComposites(const Words& a, const Words& b) : a_(a), b_(b) {
    results_.reserve(resultsOf(a.size()) * a.size());
  }

  void join() {
    for (std::size_t i = 0; i < a_.size(); ++i) {
      results_.push_back(
          {std::make_unique<Element>(newUuid_()), std::make_unique<Set>(newUuid_())});
      const auto& [element, set] = results_.back();
      element->owner = set.get();
      element->place = static_cast<std::uint32_t>(i);
      const unsigned long word = a_[i] | b_[i];
      std::memcpy(set->rest, &word, sizeof word);
    }
  }
  void letGo() { results_.clear(); }
  Words joined() const {
    Words words;
    for (std::size_t i = results_.size() - a_.size(); i < results_.size(); ++i)
      std::memcpy(&words.emplace_back(), results_[i].set->rest, sizeof words[0]);
    return words;
  }

 private:
  using Element = RawElement<ArrayElem::Impl>;
  using Set = RawElement<PowerSet::Impl>;
  struct Part {
    std::unique_ptr<Element> element;
    std::unique_ptr<Set> set;
  };
  orb::zero::UuidGenerator newUuid_;
  Words a_, b_;
  std::vector<Part> results_;
};

std::uint64_t numberOf(const Words& words) {
  return std::accumulate(words.begin(), words.end(), std::uint64_t{0}, orb::zero::hashCombine);
}

/// Results are kept until the run is over; what it takes to end them is not timed.
template <class Ours>
void addKind(Cases& cases, const std::string& kind, std::size_t parts, double factor) {
  using Raw = RawComposites<false>;
  using Flat = RawComposites<true>;
  const std::size_t results = resultsOf(parts);
  cases.push_back({.name = kind + ".join",
                   .size = parts,
                   .items = results,
                   .targets = {timesOf(factor, "raw")},
                   .sides = entrants<Ours, Raw, Flat, ObjectComposites>([=]<class X>() {
                     const auto pair =
                         std::make_shared<X>(randomWords(parts, 1), randomWords(parts, 2));
                     return Side{.run =
                                     [=] {
                                       for (std::size_t i = 0; i < results; ++i) pair->join();
                                     },
                                 .finish = [=] { pair->letGo(); },
                                 .result = [=] { return numberOf(pair->joined()); }};
                   })});
  constexpr std::size_t times = 1000;
  cases.push_back({.name = kind + ".eq",
                   .size = parts,
                   .items = times,
                   .sides = entrants<Ours, Raw, Flat>([=]<class X>() {
                     const Words words = randomWords(parts, 1);
                     const auto pair = std::make_shared<X>(words, words);
                     return Side{.run =
                                     [=] {
                                       for (std::size_t i = 0; i < times; ++i)
                                         benchmark::DoNotOptimize(pair->eq());
                                     },
                                 .result = [=] { return pair->eq(); }};
                   })});
}

}  // namespace

void addCompositeCases(Cases& cases) {
  addKind<OurStructs>(cases, "struct", 16, 3);
  addKind<OurArrays>(cases, "array", 1000, 2.5);
}

}  // namespace torvan::datamodel::benchmarks
