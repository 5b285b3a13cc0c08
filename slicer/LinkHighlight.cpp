#include "LinkHighlight.h"

#include <array>
#include <cstddef>
#include <deque>
#include <utility>

#include "Flattener.h"

namespace torvan::slicer {
namespace {

/// Spreads over the joints of a flattened diagram from the ports of highlighted leaves.
class Spreading {
 public:
  Spreading(const Flattener& flattener, const Highlight& highlight)
      : flattener_(flattener), highlight_(highlight), jointsAt_(flattener.ports()) {
    for (std::size_t joint = 0; joint < flattener.joints().size(); ++joint)
      for (const std::size_t port : flattener.joints()[joint]) jointsAt_[port].push_back(joint);
  }

  /// Per joint and end, whether that end is reached from a port that drives (or, for Direction::In,
  /// reads) without passing the joint itself.
  std::vector<std::array<bool, 2>> reachedFrom(Direction direction) const {
    std::vector<std::array<bool, 2>> reached(flattener_.joints().size());
    std::deque<std::pair<std::size_t, std::size_t>> open;
    const auto reach = [&](std::size_t joint, std::size_t port) {
      const std::size_t end = flattener_.joints()[joint][0] == port ? 0 : 1;
      if (!std::exchange(reached[joint][end], true)) open.emplace_back(joint, end);
    };
    for (const std::size_t leaf : highlight_.leaves)
      for (const LeafPort& port : flattener_.leaves()[leaf].ports)
        if (highlight_.follows(port.kind) &&
            (port.kind == SignalKind::Implicit || port.direction == direction))
          for (const std::size_t joint : jointsAt_[port.net]) reach(joint, port.net);
    while (!open.empty()) {
      const auto [joint, end] = open.front();
      open.pop_front();
      const std::size_t port = flattener_.joints()[joint][1 - end];
      for (const std::size_t next : jointsAt_[port])
        if (next != joint) reach(next, port);
    }
    return reached;
  }

 private:
  const Flattener& flattener_;
  const Highlight& highlight_;
  std::vector<std::vector<std::size_t>> jointsAt_;
};

}  // namespace

std::vector<bool> highlightedLinks(const Diagram& diagram, const Highlight& highlight) {
  const Flattener flattener(diagram);
  const Spreading spreading(flattener, highlight);
  const auto driven = spreading.reachedFrom(Direction::Out);
  const auto read = spreading.reachedFrom(Direction::In);
  std::vector<bool> result;
  for (std::size_t link = 0; link < diagram.links.size(); ++link) {
    const std::size_t joint = flattener.firstLink() + link;
    result.push_back((driven[joint][0] && read[joint][1]) || (driven[joint][1] && read[joint][0]));
  }
  return result;
}

}  // namespace torvan::slicer
