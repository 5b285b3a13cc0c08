#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "Diagram.h"
#include "DisjointSets.h"
#include "Network.h"

namespace torvan::slicer {

/// Walks a diagram with all its inner ones, numbers the ports of all blocks, collects the leaves
/// and finds out what joins ports: links, splits, super-block boundaries and tags.
class Flattener {
 public:
  /// Two joined ports, by their numbers.
  using Joint = std::array<std::size_t, 2>;

  /// `diagram` must outlive the flattener.
  explicit Flattener(const Diagram& diagram);

  /// The leaves in document order. The `net` of a port is its number.
  const std::vector<Leaf>& leaves() const { return leaves_; }
  /// The same; equal `net` values mark connected ports. Call once.
  std::vector<Leaf> takeLeaves();
  /// All numbers of ports are smaller.
  std::size_t ports() const { return joined_.size(); }
  /// Links lead in circles only where they do so on the sheets, other joints never.
  const std::vector<Joint>& joints() const { return joints_; }
  /// Where the links of the outermost diagram are among the joints, in their order.
  std::size_t firstLink() const { return firstLink_; }

 private:
  /// One diagram in its place; the outermost one is its own parent.
  struct Sheet {
    const Diagram* diagram;
    std::size_t parent;
    std::vector<std::size_t> firstPorts;  // per block, the number of its first port
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
  void join(std::size_t first, std::size_t second);
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
  DisjointSets joined_;  // ports; by links when the leaves are taken
  std::vector<Joint> joints_;
  std::size_t firstLink_ = 0;
};

}  // namespace torvan::slicer
