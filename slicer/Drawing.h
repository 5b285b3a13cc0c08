#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "Diagram.h"
#include "Network.h"

namespace torvan::slicer {

/// What a drawing brings out.
struct Highlight {
  std::set<std::size_t> leaves;  ///< Indices into Network::leaves(), with the criterion.
  std::size_t criterion = 0;     ///< The leaf the slice was made for.
  std::string caption;           ///< One line of plain text.
  bool withEvents = true;        ///< Whether influence passes along event links.

  /// Whether influence passes along what travels like this.
  bool follows(SignalKind kind) const { return withEvents || kind != SignalKind::Event; }
};

/// An SVG picture of the outermost diagram in its own layout. A link counts as highlighted when it
/// lies on a way from a highlighted leaf to another one or back to itself, a block when it is such
/// a leaf, has one inside, or meets such a link. `network` must have been made from `diagram` and
/// have the criterion.
std::string drawSvg(const Diagram& diagram, const Network& network, const Highlight& highlight);

/// The flattened network as a Graphviz digraph, with the highlighted leaves filled.
std::string drawDot(const Network& network, const Highlight& highlight);

}  // namespace torvan::slicer
