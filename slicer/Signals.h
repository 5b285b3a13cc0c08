#pragma once

#include <cstddef>
#include <vector>

#include "Network.h"

namespace torvan::slicer {

/// Elements of an output port that follow elements of an input port one by one. Elements count
/// from 1; ports are indices into `Leaf::ports`.
struct Route {
  std::size_t output = 0;
  std::size_t outputFirst = 1;
  std::size_t input = 0;
  std::size_t inputFirst = 1;
  std::size_t count = 1;
};

/// How many elements the signals of a network have, and which blocks keep them apart: MUX, DEMUX
/// and EXTRACTOR where their sizes are known, and blocks that work element by element.
class Signals {
 public:
  explicit Signals(const Network& network);

  /// Number of elements of a data port, up to 65535; 0 when it is unknown, larger, or the file
  /// contradicts itself.
  std::size_t size(LeafPortIndex port) const;
  /// The elements that the driver of a data input sends; 0 when they are unknown.
  std::size_t drivenSize(LeafPortIndex input) const;
  /// Whether the elements of an output port have values of their own.
  bool isSplit(LeafPortIndex output) const { return split_[output.leaf][output.port]; }
  /// The ways through a block that keeps elements apart; none for a block that mixes all of them.
  const std::vector<Route>& routes(std::size_t leaf) const { return routes_[leaf]; }

 private:
  void splitOutputs();
  bool follows(LeafPortIndex input) const;

  const Network& network_;
  std::vector<std::vector<std::size_t>> sizes_;
  std::vector<std::vector<bool>> split_;
  std::vector<std::vector<Route>> routes_;
};

}  // namespace torvan::slicer
