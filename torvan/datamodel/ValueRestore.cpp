#include <torvan/datamodel/ValueArchive.h>

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include <orb/zero/ElementRange.h>
#include <orb/zero/Transaction.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/PowerSetType.h>
#include <torvan/datamodel/StructType.h>
#include <torvan/datamodel/impl/ValueParts.h>

namespace torvan::datamodel {
namespace {

[[noreturn]] void fail(const std::string& place, const char* problem) {
  orb::zero::raise("CannotImportValues", {"/values/" + place, problem});
}

/// Copies bits from values to others of the same structure.
class BitsCopy {
 public:
  void copy(const LatticeValue& from, const NamedValue& to) {
    name_ = to.name;
    open_.clear();
    visit(from, to.value);
    while (!open_.empty()) {
      Pair& pair = open_.back();
      if (pair.next == pair.to.size()) {
        open_.pop_back();
        continue;
      }
      const ValuePart &source = pair.from[pair.next], &target = pair.to[pair.next];
      ++pair.next;
      if (source.key != target.key) failHere("It has other fields or indices.");
      visit(source.value, target.value);
    }
  }

 private:
  struct Pair {
    std::string_view content;
    std::vector<ValuePart> from, to;
    std::size_t next = 0;
  };

  [[noreturn]] void failHere(const char* problem) const {
    std::string place = name_;
    for (const Pair& pair : open_)
      if (pair.next > 0)
        place.append("/").append(pair.content).append("/" + pair.to[pair.next - 1].key);
    fail(place, problem);
  }

  void visit(const LatticeValue& from, const LatticeValue& to) {
    if (!from || !to) {
      if (from || to) failHere("There is a value on one side only.");
      return;
    }
    const auto [source, isNew] = sources_.emplace(to.get(), from.get());
    const auto target = targets_.emplace(from.get(), to.get()).first;
    if (source->second != from.get() || target->second != to.get())
      failHere("It stands elsewhere as well, where it is another value.");
    if (!isNew) return;
    const ValueForm& form = formOf(to->getMetaClass());
    if (&form != &formOf(from->getMetaClass())) failHere("It is of another kind.");
    if (!areAlike(from->getType(), to->getType())) failHere("It is of another type.");
    if (to->getMetaClass().isKindOf(PowerSet::metaClass()))
      return PowerSet(to)->setValue(PowerSet(from)->bits().copy());
    Pair pair{form.content, partsOf(from), partsOf(to)};
    if (pair.from.size() != pair.to.size()) failHere("It has other fields or indices.");
    open_.push_back(std::move(pair));
  }

  /// Types of the parts are compared where these are. The size of a record type means nothing.
  bool areAlike(const LatticeType& a, const LatticeType& b) {
    if (!a || !b) return !a && !b;
    if (alike_.contains({a.get(), b.get()})) return true;
    if (a->getMetaClass() != b->getMetaClass() || a->getName() != b->getName()) return false;
    const bool isRecord = a->getMetaClass().isKindOf(StructType::metaClass());
    if (!isRecord && a->getNumElems() != b->getNumElems()) return false;
    if (a->getMetaClass().isKindOf(PowerSetType::metaClass())) {
      const PowerSetType first{a}, second{b};
      if (!std::ranges::equal(first->getUniverse(), second->getUniverse())) return false;
    }
    return alike_.emplace(a.get(), b.get()).second;
  }

  std::string name_;
  std::vector<Pair> open_;
  std::unordered_map<const ModelElement::Impl*, const ModelElement::Impl*> sources_, targets_;
  std::set<std::pair<const ModelElement::Impl*, const ModelElement::Impl*>> alike_;
};

}  // namespace

void restoreValues(std::istream& in, std::span<const NamedValue> values) {
  std::unordered_map<std::string, LatticeValue> read;
  for (NamedValue& named : importValues(in, orb::zero::Model::create()))
    read.emplace(std::move(named.name), std::move(named.value));

  std::optional<orb::zero::Transaction> transaction;
  BitsCopy bits;
  for (const NamedValue& named : values) {
    if (named.value && !transaction) transaction.emplace(named.value->getModel());
    const auto source = read.extract(named.name);
    if (!source) fail(named.name, "The text has no such value, or not so many.");
    bits.copy(source.mapped(), named);
  }
  if (!read.empty()) fail(read.begin()->first, "The text has a value of this name too many.");
  if (transaction) transaction->commit();
}

std::vector<NamedValue> powerSetsOf(const orb::zero::Model& model) {
  std::vector<NamedValue> sets;
  for (const ModelElement element : model.elements(PowerSet::metaClass()))
    sets.push_back({orb::zero::toString(element->getUuid()), LatticeValue{element}});
  return sets;
}

}  // namespace torvan::datamodel
