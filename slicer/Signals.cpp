#include "Signals.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include <boost/algorithm/string/trim.hpp>

namespace torvan::slicer {
namespace {

constexpr std::size_t unknown = 0;
constexpr std::size_t conflict = SIZE_MAX;
constexpr std::size_t mostElements = UINT16_MAX;  // of an array

/// Adds to what is known of a size; true when that was new. A size only ever turns from unknown
/// into known and from known into a conflict.
bool learn(std::size_t& known, std::size_t size) {
  const std::size_t before = known;
  if (size != unknown && size != known)
    known = known == unknown && size <= mostElements ? size : conflict;
  return known != before;
}

bool isOneOf(std::string_view kind, std::initializer_list<std::string_view> kinds) {
  return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}
bool isMux(const Leaf& leaf) { return isOneOf(leaf.kind, {"MUX", "MUX_f"}); }
bool isDemux(const Leaf& leaf) { return isOneOf(leaf.kind, {"DEMUX", "DEMUX_f"}); }
bool isExtractor(const Leaf& leaf) { return leaf.kind == "EXTRACTOR"; }

std::string_view firstExpr(const Leaf& leaf) {
  return leaf.exprs.empty() ? std::string_view() : leaf.exprs.front();
}

/// Without the brackets around it, if there are any.
std::string_view inBrackets(std::string_view text) {
  if (text.size() >= 2 && text.front() == '[' && text.back() == ']')
    return text.substr(1, text.size() - 2);
  return text;
}

/// A literal list of whole numbers; anything that would have to be computed is no list.
std::optional<std::vector<long>> integers(const Leaf& leaf) {
  const std::string_view text = inBrackets(firstExpr(leaf));
  constexpr std::string_view separators = " \t\r\n,;";
  std::vector<long> numbers;
  for (std::size_t at = text.find_first_not_of(separators); at < text.size();
       at = text.find_first_not_of(separators, at)) {
    const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
    const std::size_t digits = text[at] == '+' ? at + 1 : at;
    long number = 0;
    const auto parsed = std::from_chars(text.data() + digits, text.data() + end, number);
    if (parsed.ec != std::errc() || parsed.ptr != text.data() + end) return std::nullopt;
    numbers.push_back(number);
    at = end;
  }
  if (numbers.empty()) return std::nullopt;
  return numbers;
}

/// One literal number. Words that stand for no number are names.
bool isScalar(std::string_view given) {
  const std::string text = boost::trim_copy(std::string(inBrackets(given)));
  double number = 0;
  const std::size_t sign = !text.empty() && text.front() == '+' ? 1 : 0;
  const auto parsed = std::from_chars(text.data() + sign, text.data() + text.size(), number);
  return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size() &&
         std::isfinite(number);
}

bool isElementwise(const Leaf& leaf) {
  return isOneOf(leaf.kind, {"SUMMATION", "BIGSOM_f", "SUM_f", "INTEGRAL_m"}) ||
         (leaf.kind == "GAINBLK" && isScalar(firstExpr(leaf)));
}

std::vector<std::size_t> dataPorts(const Leaf& leaf, Direction direction) {
  std::vector<std::size_t> ports;
  for (std::size_t port = 0; port < leaf.ports.size(); ++port)
    if (leaf.ports[port].kind == SignalKind::Data && leaf.ports[port].direction == direction)
      ports.push_back(port);
  return ports;
}

/// What the parameter of a MUX or DEMUX says of the sizes of its ports: one each, or only their
/// number.
std::vector<std::size_t> listedSizes(const Leaf& leaf, std::size_t ports) {
  const auto list = integers(leaf);
  if (!list || (list->size() == 1 && list->front() == static_cast<long>(ports)))
    return std::vector(ports, unknown);
  if (list->size() != ports) return std::vector(ports, conflict);
  std::vector<std::size_t> sizes;
  for (const long size : *list)
    sizes.push_back(size > 0 ? static_cast<std::size_t>(size) : unknown);
  return sizes;
}

/// Spreads what is known of sizes along the nets, and through blocks, until nothing is new.
class SizeSolver {
 public:
  explicit SizeSolver(const Network& network);

  /// By leaf and port.
  std::vector<std::vector<std::size_t>> solve();

 private:
  /// The size of one side of a block follows from the sizes on the other, once all are known: it is
  /// their sum, or the one that they have in common.
  struct Rule {
    Direction from;
    bool isSum;
    std::size_t missing;
    std::size_t sum = 0, common = unknown;
  };

  void learnOf(LeafPortIndex port, std::size_t size);
  void learnOf(std::size_t leaf, Direction direction, std::size_t size);
  void applyRule(std::size_t leaf, std::size_t size);

  const Network& network_;
  std::vector<std::vector<std::size_t>> sizes_;
  std::vector<std::size_t> driven_;  // by net
  std::vector<std::optional<Rule>> rules_;
  std::vector<LeafPortIndex> news_;  // ports of which more is known
};

SizeSolver::SizeSolver(const Network& network)
    : network_(network), driven_(network.nets().size(), unknown) {
  for (std::size_t l = 0; l < network.leaves().size(); ++l) {
    const Leaf& leaf = network.leaves()[l];
    sizes_.emplace_back(leaf.ports.size(), unknown);
    for (std::size_t port = 0; port < leaf.ports.size(); ++port)
      if (leaf.ports[port].kind == SignalKind::Data) learnOf({l, port}, leaf.ports[port].size);
    const bool isSum = isMux(leaf) || isDemux(leaf);
    const Direction from = isDemux(leaf) ? Direction::Out : Direction::In;
    const auto parts = dataPorts(leaf, from);
    if (isSum) {
      const auto listed = listedSizes(leaf, parts.size());
      for (std::size_t i = 0; i < parts.size(); ++i) learnOf({l, parts[i]}, listed[i]);
    } else if (isExtractor(leaf)) {
      if (const auto indices = integers(leaf)) learnOf(l, Direction::Out, indices->size());
    }
    auto& rule = rules_.emplace_back();
    if (isSum || isElementwise(leaf)) rule = {from, isSum, parts.size()};
  }
}

void SizeSolver::learnOf(LeafPortIndex port, std::size_t size) {
  if (learn(sizes_[port.leaf][port.port], size)) news_.push_back(port);
}

void SizeSolver::learnOf(std::size_t leaf, Direction direction, std::size_t size) {
  for (const std::size_t port : dataPorts(network_.leaves()[leaf], direction))
    learnOf({leaf, port}, size);
}

void SizeSolver::applyRule(std::size_t leaf, std::size_t size) {
  Rule& rule = *rules_[leaf];
  const Direction to = rule.from == Direction::In ? Direction::Out : Direction::In;
  if (size == conflict) {
    rules_[leaf].reset();
    return learnOf(leaf, to, conflict);
  }
  rule.sum += size;
  learn(rule.common, size);
  if (--rule.missing == 0) learnOf(leaf, to, rule.isSum ? rule.sum : rule.common);
}

std::vector<std::vector<std::size_t>> SizeSolver::solve() {
  while (!news_.empty()) {
    const LeafPortIndex at = news_.back();
    news_.pop_back();
    const LeafPort& port = network_.leaves()[at.leaf].ports[at.port];
    const std::size_t size = sizes_[at.leaf][at.port];
    if (rules_[at.leaf] && rules_[at.leaf]->from == port.direction) applyRule(at.leaf, size);
    if (port.direction == Direction::In || !learn(driven_[port.net], size)) continue;
    for (const LeafPortIndex reader : network_.nets()[port.net].readers)
      learnOf(reader, driven_[port.net]);
  }
  return std::move(sizes_);
}

/// The ways through a block whose ports all have known sizes; none when they do not fit together.
std::vector<Route> routesOf(const Leaf& leaf, const std::vector<std::size_t>& sizes) {
  const auto inputs = dataPorts(leaf, Direction::In);
  const auto outputs = dataPorts(leaf, Direction::Out);
  const auto isUnknown = [&](std::size_t port) {
    return sizes[port] == unknown || sizes[port] == conflict;
  };
  if (std::any_of(inputs.begin(), inputs.end(), isUnknown) ||
      std::any_of(outputs.begin(), outputs.end(), isUnknown) || outputs.empty())
    return {};

  std::vector<Route> routes;
  if (isElementwise(leaf)) {
    for (const std::size_t port : inputs)
      if (outputs.size() == 1 && sizes[port] == sizes[outputs[0]])
        routes.push_back({outputs[0], 1, port, 1, sizes[port]});
    return routes.size() == inputs.size() ? routes : std::vector<Route>();
  }

  // All other blocks move elements: the n-th element of the outputs is one of the inputs' elements.
  std::vector<std::size_t> ends;  // of the inputs
  std::size_t total = 0, sent = 0;
  for (const std::size_t port : inputs) ends.push_back(total += sizes[port]);
  for (const std::size_t port : outputs) sent += sizes[port];
  std::vector<std::size_t> sources;
  if ((isMux(leaf) || isDemux(leaf)) && total == sent) {
    sources.resize(total);
    std::iota(sources.begin(), sources.end(), std::size_t{0});
  } else if (isExtractor(leaf)) {
    for (const long index : integers(leaf).value_or(std::vector<long>{0})) {
      if (index <= 0 || static_cast<std::size_t>(index) > total) return {};
      sources.push_back(static_cast<std::size_t>(index) - 1);
    }
  }
  if (sources.size() != sent) return {};
  auto next = sources.begin();
  for (const std::size_t output : outputs) {
    for (std::size_t element = 1; element <= sizes[output]; ++element, ++next) {
      const auto end = std::upper_bound(ends.begin(), ends.end(), *next);
      const std::size_t input = inputs[static_cast<std::size_t>(end - ends.begin())];
      const std::size_t first = *next - (*end - sizes[input]) + 1;
      Route* const last = routes.empty() ? nullptr : &routes.back();
      if (last && last->output == output && last->input == input &&
          last->inputFirst + last->count == first)
        ++last->count;
      else
        routes.push_back({output, element, input, first, 1});
    }
  }
  return routes;
}

}  // namespace

Signals::Signals(const Network& network) : network_(network), sizes_(SizeSolver(network).solve()) {
  for (std::size_t leaf = 0; leaf < network.leaves().size(); ++leaf) {
    split_.emplace_back(network.leaves()[leaf].ports.size(), false);
    routes_.push_back(routesOf(network.leaves()[leaf], sizes_[leaf]));
  }
  splitOutputs();
}

std::size_t Signals::size(LeafPortIndex port) const {
  const std::size_t size = sizes_[port.leaf][port.port];
  return size == conflict ? unknown : size;
}

std::size_t Signals::drivenSize(LeafPortIndex input) const {
  std::size_t largest = unknown;
  for (const LeafPortIndex driver :
       network_.nets()[network_.leaves()[input.leaf].ports[input.port].net].drivers)
    largest = std::max(largest, size(driver));
  return largest;
}

/// A block has elements to keep apart if it puts several inputs together, or reads such elements.
/// The routes of the others say nothing, as all their elements have one value.
void Signals::splitOutputs() {
  std::vector<bool> isApart(network_.leaves().size(), false);
  std::vector<std::size_t> pending;
  const auto keepApart = [&](std::size_t leaf) {
    isApart[leaf] = true;
    pending.push_back(leaf);
  };
  for (std::size_t leaf = 0; leaf < isApart.size(); ++leaf)
    if (isMux(network_.leaves()[leaf]) && routes_[leaf].size() > 1) keepApart(leaf);
  while (!pending.empty()) {
    const std::size_t leaf = pending.back();
    pending.pop_back();
    for (const Route& route : routes_[leaf]) {
      if (sizes_[leaf][route.output] <= 1 || split_[leaf][route.output]) continue;
      split_[leaf][route.output] = true;
      for (const LeafPortIndex reader :
           network_.nets()[network_.leaves()[leaf].ports[route.output].net].readers)
        if (!isApart[reader.leaf] && follows(reader)) keepApart(reader.leaf);
    }
  }
  for (std::size_t leaf = 0; leaf < isApart.size(); ++leaf)
    if (!isApart[leaf]) routes_[leaf].clear();
}

bool Signals::follows(LeafPortIndex input) const {
  const auto& routes = routes_[input.leaf];
  return std::any_of(routes.begin(), routes.end(),
                     [=](const Route& route) { return route.input == input.port; });
}

}  // namespace torvan::slicer
