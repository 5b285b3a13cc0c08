#include "Flattener.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace torvan::slicer {
namespace {

constexpr std::size_t maxElements = 1'000'000;

bool isSender(const Block& block) { return block.kind == "GOTO" || block.kind == "CLKGOTO"; }

bool isReceiver(const Block& block) { return block.kind == "FROM" || block.kind == "CLKFROM"; }

bool isScopeMark(const Block& block) {
  return block.kind == "GotoTagVisibility" || block.kind == "CLKGotoTagVisibility";
}

std::string_view expression(const Block& block, std::size_t index) {
  return index < block.exprs.size() ? std::string_view(block.exprs[index]) : std::string_view();
}

std::size_t sizeOf(const Port& port) {
  const auto size = static_cast<std::size_t>(port.rows) * static_cast<std::size_t>(port.columns);
  return size <= maxElements ? size : 0;
}

}  // namespace

Flattener::Flattener(const Diagram& diagram) {
  addSheet(diagram, 0, Leaf());
  joinTags();
}

std::vector<Leaf> Flattener::takeLeaves() {
  for (const auto& [first, second] : joints_) joined_.unite(first, second);
  for (Leaf& leaf : leaves_)
    for (LeafPort& port : leaf.ports) port.net = joined_.find(port.net);
  return std::move(leaves_);
}

std::size_t Flattener::addSheet(const Diagram& diagram, std::size_t parent, const Leaf& enclosing) {
  const std::size_t sheet = sheets_.size();
  sheets_.push_back({&diagram, parent, {}});
  for (const Block& block : diagram.blocks) {
    sheets_[sheet].firstPorts.push_back(joined_.size());
    joined_.add(block.ports.size());
  }
  for (std::size_t index = 0; index < diagram.blocks.size(); ++index)
    addBlock(diagram.blocks[index], index, sheet, enclosing);
  joinLinks(sheets_[sheet]);
  return sheet;
}

void Flattener::addBlock(const Block& block, std::size_t index, std::size_t sheet,
                         const Leaf& enclosing) {
  const std::size_t firstPort = sheets_[sheet].firstPorts[index];
  const TagBlock tagBlock{&block, sheet, firstPort};
  const bool isInner = sheets_.front().diagram != sheets_[sheet].diagram;
  Leaf leaf;
  leaf.name = isInner ? enclosing.name + "/" + block.name : block.name;
  leaf.path = enclosing.path;
  leaf.path.push_back(index);
  if (block.isSplit) {
    joinPorts(block, firstPort);
  } else if (!block.inner.empty()) {
    const std::size_t inner = addSheet(block.inner.front(), sheet, leaf);
    joinBoundary(block, firstPort, sheets_[inner]);
  } else if (isSender(block)) {
    senders_.push_back(tagBlock);
  } else if (isReceiver(block)) {
    receivers_.push_back(tagBlock);
  } else if (isScopeMark(block)) {
    scopes_.push_back(tagBlock);
  } else if (!block.boundary || !isInner) {
    addLeaf(block, firstPort, std::move(leaf));
  }
}

void Flattener::addLeaf(const Block& block, std::size_t firstPort, Leaf leaf) {
  leaf.kind = block.kind;
  leaf.feedthrough = block.dependsOnU;
  leaf.exprs = block.exprs;
  for (const Port& port : block.ports)
    leaf.ports.push_back({port.kind, port.direction, port.number, sizeOf(port), firstPort++});
  leaves_.push_back(std::move(leaf));
}

void Flattener::join(std::size_t first, std::size_t second) {
  if (joined_.unite(first, second)) joints_.push_back({first, second});
}

void Flattener::joinPorts(const Block& block, std::size_t firstPort) {
  for (std::size_t i = 1; i < block.ports.size(); ++i)
    if (block.ports[i].kind == block.ports[0].kind) join(firstPort, firstPort + i);
}

void Flattener::joinLinks(const Sheet& sheet) {
  firstLink_ = joints_.size();  // of the outermost diagram in the end
  const auto number = [&](const PortIndex& at) { return sheet.firstPorts[at.block] + at.port; };
  for (const Link& link : sheet.diagram->links)
    joints_.push_back({number(link.source), number(link.target)});
}

void Flattener::joinBoundary(const Block& outer, std::size_t firstOuterPort, const Sheet& inner) {
  for (std::size_t i = 0; i < inner.diagram->blocks.size(); ++i) {
    const Block& block = inner.diagram->blocks[i];
    if (!block.boundary || block.ports.empty()) continue;
    for (std::size_t p = 0; p < outer.ports.size(); ++p) {
      const Port& port = outer.ports[p];
      if (port.kind == block.boundary->kind && port.direction == block.boundary->direction &&
          port.number == block.boundary->number && port.kind == block.ports.front().kind)
        join(firstOuterPort + p, inner.firstPorts[i]);
    }
  }
}

void Flattener::joinTags() {
  std::unordered_map<std::string_view, std::vector<const TagBlock*>> senders;
  for (const TagBlock& sender : senders_) senders[expression(*sender.block, 0)].push_back(&sender);
  for (const TagBlock& receiver : receivers_)
    for (const TagBlock* sender : senders[expression(*receiver.block, 0)])
      if (reaches(*sender, receiver)) join(sender->firstPort, receiver.firstPort);
}

/// Of two with the same tag.
bool Flattener::reaches(const TagBlock& sender, const TagBlock& receiver) const {
  const std::string_view tag = expression(*sender.block, 0);
  if (sender.block->ports.empty() || receiver.block->ports.empty()) return false;
  if (sender.block->ports[0].kind != receiver.block->ports[0].kind) return false;
  const std::string_view visibility = expression(*sender.block, 1);
  if (visibility == "3") return true;
  if (visibility != "2") return sender.sheet == receiver.sheet;
  return std::any_of(scopes_.begin(), scopes_.end(), [&](const TagBlock& scope) {
    return expression(*scope.block, 0) == tag && isWithin(sender.sheet, scope.sheet) &&
           isWithin(receiver.sheet, scope.sheet);
  });
}

bool Flattener::isWithin(std::size_t sheet, std::size_t outer) const {
  while (sheet != outer && sheet != 0) sheet = sheets_[sheet].parent;
  return sheet == outer;
}

}  // namespace torvan::slicer
