#include "Network.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

#include "Flattener.h"

namespace torvan::slicer {
namespace {

auto portOrder(const LeafPort& port) { return std::tuple(port.kind, port.direction, port.number); }

}  // namespace

std::optional<std::size_t> Leaf::findPort(SignalKind portKind, Direction direction,
                                          int number) const {
  const auto found = std::find_if(ports.begin(), ports.end(), [&](const LeafPort& port) {
    return portOrder(port) == std::tuple(portKind, direction, number);
  });
  if (found == ports.end()) return std::nullopt;
  return static_cast<std::size_t>(found - ports.begin());
}

Network::Network(const Diagram& diagram) {
  leaves_ = Flattener(diagram).takeLeaves();
  std::unordered_map<std::size_t, std::size_t> netOfSet;
  for (std::size_t leaf = 0; leaf < leaves_.size(); ++leaf) {
    std::vector<LeafPort>& ports = leaves_[leaf].ports;
    std::stable_sort(ports.begin(), ports.end(), [](const LeafPort& a, const LeafPort& b) {
      return portOrder(a) < portOrder(b);
    });
    for (std::size_t index = 0; index < ports.size(); ++index) {
      LeafPort& port = ports[index];
      const auto [entry, isNew] = netOfSet.try_emplace(port.net, nets_.size());
      if (isNew) nets_.push_back({port.kind, {}, {}});
      port.net = entry->second;
      Net& net = nets_[port.net];
      if (goes(port, Direction::Out)) net.drivers.push_back({leaf, index});
      if (goes(port, Direction::In)) net.readers.push_back({leaf, index});
    }
  }
}

}  // namespace torvan::slicer
