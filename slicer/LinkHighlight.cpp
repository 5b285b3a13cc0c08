#include "LinkHighlight.h"

#include <array>
#include <cstddef>
#include <deque>
#include <utility>

namespace torvan::slicer {
namespace {

/// Spreads over the links of a diagram from where ways may end, through splits.
class Spreading {
 public:
  Spreading(const Diagram& diagram, const MayEnd& mayEnd)
      : diagram_(diagram), mayEnd_(mayEnd), linksAt_(diagram.blocks.size()) {
    for (std::size_t link = 0; link < diagram.links.size(); ++link)
      for (const PortIndex& end : endsOf(link)) linksAt_[end.block].push_back(link);
  }

  /// Per link and end, whether that end is reached from one that drives (or, for Direction::In,
  /// reads) without passing the link itself.
  std::vector<std::array<bool, 2>> reachedFrom(Direction direction) const {
    std::vector<std::array<bool, 2>> reached(diagram_.links.size());
    std::deque<std::pair<std::size_t, std::size_t>> open;
    const auto reach = [&](std::size_t link, std::size_t end) {
      if (!std::exchange(reached[link][end], true)) open.emplace_back(link, end);
    };
    for (std::size_t link = 0; link < diagram_.links.size(); ++link) {
      const auto ends = endsOf(link);
      for (std::size_t end = 0; end < 2; ++end)
        if (isSource(link, ends[end], direction)) reach(link, end);
    }
    while (!open.empty()) {
      const auto [link, end] = open.front();
      open.pop_front();
      const std::size_t block = endsOf(link)[1 - end].block;
      if (!diagram_.blocks[block].isSplit) continue;
      for (const std::size_t next : linksAt_[block])
        if (next != link) reach(next, endsOf(next)[0].block == block ? 0 : 1);
    }
    return reached;
  }

 private:
  std::array<PortIndex, 2> endsOf(std::size_t link) const {
    return {diagram_.links[link].source, diagram_.links[link].target};
  }

  bool isSource(std::size_t link, const PortIndex& end, Direction direction) const {
    const Block& block = diagram_.blocks[end.block];
    const Port& port = block.ports[end.port];
    return !block.isSplit && (port.kind == SignalKind::Implicit || port.direction == direction) &&
           mayEnd_(link, end);
  }

  const Diagram& diagram_;
  const MayEnd& mayEnd_;
  std::vector<std::vector<std::size_t>> linksAt_;
};

}  // namespace

std::vector<bool> highlightedLinks(const Diagram& diagram, const MayEnd& mayEnd) {
  const Spreading spreading(diagram, mayEnd);
  const auto driven = spreading.reachedFrom(Direction::Out);
  const auto read = spreading.reachedFrom(Direction::In);
  std::vector<bool> result(diagram.links.size());
  for (std::size_t link = 0; link < result.size(); ++link)
    result[link] = (driven[link][0] && read[link][1]) || (driven[link][1] && read[link][0]);
  return result;
}

}  // namespace torvan::slicer
