#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Diagram.h"

namespace torvan::slicer {

/// A port of a leaf block. Implicit ports keep the direction under which the file lists them,
/// though signals have none there.
struct LeafPort {
  SignalKind kind = SignalKind::Data;
  Direction direction = Direction::In;
  int number = 0;        ///< 1-based within kind and direction.
  std::size_t size = 0;  ///< Number of elements; 0 when the file leaves it open or it is absurd.
  std::size_t net = 0;   ///< Index into Network::nets().
};

/// A block that does something by itself, as opposed to super-blocks and mere wiring.
struct Leaf {
  std::string name;  ///< Names of the enclosing super-blocks and its own, joined by '/'.
  std::string kind;
  bool feedthrough = false;  ///< Outputs follow inputs without delay.
  std::vector<std::string> exprs;
  std::vector<LeafPort> ports;    ///< By kind, direction and number.
  std::vector<std::size_t> path;  ///< Block index in the outermost diagram, in the next one, ...

  /// The index of a port in `ports`, if there is one.
  std::optional<std::size_t> findPort(SignalKind portKind, Direction direction, int number) const;
};

/// A port by the index of its leaf and its own index in the leaf.
struct LeafPortIndex {
  std::size_t leaf = 0;
  std::size_t port = 0;
};

/// All leaf ports that are connected with each other. On an implicit net every port both drives
/// and reads.
struct Net {
  SignalKind kind = SignalKind::Data;
  std::vector<LeafPortIndex> drivers;
  std::vector<LeafPortIndex> readers;
};

/// A diagram flattened to its leaf blocks and the nets between them. Independent of the diagram's
/// life time.
class Network {
 public:
  explicit Network(const Diagram& diagram);

  /// In document order, the leaves of a super-block in its place.
  const std::vector<Leaf>& leaves() const { return leaves_; }

  const std::vector<Net>& nets() const { return nets_; }

 private:
  std::vector<Leaf> leaves_;
  std::vector<Net> nets_;
};

}  // namespace torvan::slicer
