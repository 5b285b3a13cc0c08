#include "LinkHighlight.h"

#include <array>
#include <cstddef>
#include <cstdint>
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
    std::vector<std::size_t> firstAt(flattener_.ports(), none);  // the joint of the first arrival
    std::deque<std::pair<std::size_t, std::size_t>> open;
    const auto reach = [&](std::size_t joint, std::size_t port) {
      const std::size_t end = flattener_.joints()[joint][0] == port ? 0 : 1;
      if (!std::exchange(reached[joint][end], true)) open.emplace_back(joint, end);
    };
    const auto reachAll = [&](std::size_t port, std::size_t but) {
      for (const std::size_t joint : jointsAt_[port])
        if (joint != but) reach(joint, port);
    };
    for (const std::size_t leaf : highlight_.leaves)
      for (const LeafPort& port : flattener_.leaves()[leaf].ports)
        if (highlight_.follows(port.kind) && goes(port, direction)) {
          firstAt[port.net] = done;
          reachAll(port.net, none);
        }
    while (!open.empty()) {
      const auto [joint, end] = open.front();
      open.pop_front();
      const std::size_t port = flattener_.joints()[joint][1 - end];
      if (firstAt[port] == none) {
        firstAt[port] = joint;
        reachAll(port, joint);
      } else if (firstAt[port] != done && firstAt[port] != joint) {  // only that one is left
        reach(std::exchange(firstAt[port], done), port);
      }
    }
    return reached;
  }

 private:
  static constexpr std::size_t none = SIZE_MAX, done = none - 1;

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
