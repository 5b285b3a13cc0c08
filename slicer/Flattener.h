#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Diagram.h"
#include "DisjointSets.h"
#include "Network.h"

namespace torvan::slicer {

/// Walks a diagram with all its inner ones, collects the leaves and finds out which ports are
/// connected through links, splits, super-block boundaries and tags.
class Flattener {
 public:
  /// `diagram` must outlive the flattener.
  explicit Flattener(const Diagram& diagram);

  /// The leaves in document order. Equal `net` values mark connected ports; they are not yet
  /// indices of anything. Call once.
  std::vector<Leaf> takeLeaves();
  /// The `net` value of a port of the outermost diagram.
  std::size_t netOf(const PortIndex& port) {
    return joined_.find(sheets_.front().firstPorts[port.block] + port.port);
  }

 private:
  /// One diagram in its place; the outermost one is its own parent.
  struct Sheet {
    const Diagram* diagram;
    std::size_t parent;
    std::vector<std::size_t> firstPorts;  // per block, the number of its first port in joined_
  };

  /// A block that sends, receives or scopes signals by name.
  struct TagBlock {
    const Block* block;
    std::size_t sheet;
    std::size_t firstPort;
  };

  std::size_t addSheet(const Diagram& diagram, std::size_t parent, const Leaf& enclosing);
  void addBlock(const Block& block, std::size_t index, std::size_t sheet, const Leaf& enclosing);
  void addLeaf(const Block& block, std::size_t firstPort, Leaf leaf);
  void joinPorts(const Block& block, std::size_t firstPort);
  void joinLinks(const Sheet& sheet);
  void joinBoundary(const Block& outer, std::size_t firstOuterPort, const Sheet& inner);
  void joinTags();
  bool reaches(const TagBlock& sender, const TagBlock& receiver) const;
  bool isWithin(std::size_t sheet, std::size_t outer) const;

  std::vector<Sheet> sheets_;
  std::vector<Leaf> leaves_;
  std::vector<TagBlock> senders_;
  std::vector<TagBlock> receivers_;
  std::vector<TagBlock> scopes_;
  DisjointSets joined_;
};

}  // namespace torvan::slicer
