#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <torvan/datamodel.h>

#include "Diagram.h"

namespace torvan::slicer {

/// A port of a block, as far as slices know it: a data or physical port, or any that is read.
struct BlockPort {
  SignalKind kind = SignalKind::Data;
  Direction direction = Direction::In;
  int number = 0;                      ///< 1-based within kind and direction.
  std::size_t size = 0;                ///< Number of elements that an input reads; 0 when unknown.
  std::vector<datamodel::Term> reads;  ///< Sets of blocks, or arrays with a set per element.

  /// "in1", "eventOut2", "physicalIn1", ...
  std::string name() const;
};

struct SystemBlock {
  std::string name;
  std::vector<BlockPort> ports;
};

/// All that slices are made from: the equations of influences between blocks, and what the terms of
/// these stand for. Block k, from 0, is bit k of a set.
///
/// The model of the equations holds the rest as a second system, which nobody solves. It reads as
///
///     room.xcos = data                                   the diagram, and what is an influence
///     MUX#1 =                                            a block
///     StructRef(MUX#1,'in1[2]') = Join(GENSIN_f#1)       a port, its size, what it reads
struct BlockSystem {
  datamodel::System equations;
  std::string diagram;
  std::string dependences;
  std::vector<SystemBlock> blocks;

  /// Adds the second system to the model, which has to come after the first.
  void describe() const;
  /// Reads both. Throws std::runtime_error, or orb::zero::Exception, for a model that holds none.
  static BlockSystem of(const orb::zero::Model& model);
};

}  // namespace torvan::slicer
