#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace torvan::slicer {

/// What travels over a port or link: values, activations, or an undirected physical coupling.
enum class SignalKind { Data, Event, Implicit };

enum class Direction { In, Out };

/// Whether signals go this way by the port; those of a physical one go both ways.
bool goes(const auto& port, Direction direction) {
  return port.kind == SignalKind::Implicit || port.direction == direction;
}

/// In the length unit of the file; y grows downwards.
struct Point {
  double x = 0;
  double y = 0;
};

struct Rectangle {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

struct Port {
  SignalKind kind = SignalKind::Data;
  Direction direction = Direction::In;
  int number = 0;               ///< 1-based within kind and direction.
  int rows = 1;                 ///< 0 when the file leaves it open.
  int columns = 1;              ///< 0 when the file leaves it open.
  std::optional<Point> centre;  ///< Relative to the top left corner of the block.
};

/// Marks a block that stands for a port of the block around its diagram.
struct Boundary {
  SignalKind kind = SignalKind::Data;
  Direction direction = Direction::In;
  int number = 0;  ///< Number of the outer port.
};

/// How a block is turned on the sheet: first clockwise by a multiple of 90 degrees, then mirrored.
struct Orientation {
  int quarterTurns = 0;  ///< 0 to 3.
  bool leftRightMirrored = false;
  bool topBottomMirrored = false;
};

struct Diagram;

struct Block {
  std::string id;    ///< Unique among the blocks of its diagram only.
  std::string kind;  ///< Library name of the block; the file's element name where it has none.
  std::string name;  ///< `kind#k`: the k-th block of its kind in its diagram.
  std::string simulation;   ///< Name of the simulation function.
  std::string label;        ///< Plain text, often empty.
  bool dependsOnU = false;  ///< Outputs follow inputs without delay.
  bool isSplit = false;     ///< Only branches a link.
  Rectangle geometry;
  Orientation orientation;
  std::vector<std::string> exprs;  ///< Parameters as the user typed them.
  std::optional<Boundary> boundary;
  std::vector<Port> ports;
  std::vector<Diagram> inner;  ///< The inner diagram of a super-block; empty or one.
};

/// A port by the index of its block in the diagram and its own index in the block.
struct PortIndex {
  std::size_t block = 0;
  std::size_t port = 0;
};

/// Joins two ports; which of them drives follows from the ports, not from the order here.
struct Link {
  SignalKind kind = SignalKind::Data;
  PortIndex source;
  PortIndex target;
  std::vector<Point> points;  ///< Bends between the two ends.
};

/// One sheet of a block diagram with everything inside its super-blocks.
struct Diagram {
  std::string title;
  std::vector<Block> blocks;  ///< In document order.
  std::vector<Link> links;
  /// What the file lacks, one line each. The outermost diagram has those of all inner ones.
  std::vector<std::string> warnings;
};

}  // namespace torvan::slicer
