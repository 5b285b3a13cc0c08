#include <torvan/datamodel/LatticeValue.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_INDEXABLEVALUE_H
#define TORVAN_DATAMODEL_INDEXABLEVALUE_H

#include <cstdint>

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

class Ref;

/// A value whose parts are numbered from 1: a power set or an array. Abstract.
///
/// A range of indices is inclusive; an end of 0 stands for the single part at the start.
class TORVAN_DATAMODEL_API IndexableValue : public orb::zero::Handle<IndexableValue, LatticeValue> {
 public:
  class Impl;
  using Handle::Handle;

  /// Reads a part or a range of parts; the kinds say what is new and what is shared.
  LatticeValue at(std::uint16_t start, std::uint16_t end = 0) const;
  /// The place of a part or of a range of parts, to be written; see `Ref`.
  Ref ref(std::uint16_t start, std::uint16_t end = 0) const;
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_INDEXABLEVALUE_H
