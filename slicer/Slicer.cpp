#include "Slicer.h"

namespace torvan::slicer {

using namespace datamodel;

Slicer::Slicer(const BlockSystem& system, const FixpointSolver::Progress& progress)
    : system_(system), solver_(system.equations) {
  solver_.solve(progress);
}

void Slicer::join(BitSet& influences, const BlockPort& port,
                  std::optional<std::size_t> element) const {
  const auto add = [&](const LatticeValue& value) {
    BitSet bits = PowerSet(value)->bits().copy();
    bits.resize(influences.size());
    influences |= bits;
  };
  for (const Term& term : port.reads) {
    const LatticeValue value = solver_.evaluate(term);
    if (!value->getMetaClass().isKindOf(Array::metaClass())) {
      add(value);
      continue;
    }
    for (const auto& [index, part] : Array(value)->getValues())
      if (!element || index == *element) add(part->getValue());
  }
}

BitSet Slicer::influences(const SystemBlock& block) const {
  BitSet influences(system_.blocks.size());
  for (const BlockPort& port : block.ports) join(influences, port);
  return influences;
}

std::set<std::size_t> Slicer::backward(const Criterion& criterion) const {
  const SystemBlock& block = system_.blocks[criterion.block];
  BitSet found(system_.blocks.size());
  if (criterion.port)
    join(found, block.ports[*criterion.port], criterion.element);
  else
    found = influences(block);
  std::set<std::size_t> slice{criterion.block};
  for (std::size_t each = found.find_first(); each != BitSet::npos; each = found.find_next(each))
    slice.insert(each);
  return slice;
}

std::set<std::size_t> Slicer::forward(const Criterion& criterion) const {
  std::set<std::size_t> slice{criterion.block};
  for (std::size_t block = 0; block < system_.blocks.size(); ++block)
    if (influences(system_.blocks[block]).test(criterion.block)) slice.insert(block);
  return slice;
}

}  // namespace torvan::slicer
