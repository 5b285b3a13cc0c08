#include "Signals.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

namespace torvan::slicer {
namespace {

constexpr std::size_t unknown = 0;
constexpr std::size_t conflict = SIZE_MAX;

/// The one size that all evidence gives.
class Evidence {
 public:
  void add(std::size_t size) {
    if (size == unknown || size == size_) return;
    size_ = size_ == unknown ? size : conflict;
  }
  std::size_t size() const { return size_; }

 private:
  std::size_t size_ = unknown;
};

bool isOneOf(std::string_view kind, std::initializer_list<std::string_view> kinds) {
  return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}
bool isMux(const Leaf& leaf) { return isOneOf(leaf.kind, {"MUX", "MUX_f"}); }
bool isDemux(const Leaf& leaf) { return isOneOf(leaf.kind, {"DEMUX", "DEMUX_f"}); }
bool isExtractor(const Leaf& leaf) { return leaf.kind == "EXTRACTOR"; }

std::string_view firstExpr(const Leaf& leaf) {
  std::string_view text = leaf.exprs.empty() ? std::string_view() : leaf.exprs.front();
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
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

/// One literal number.
bool isScalar(std::string_view text) {
  text = inBrackets(text);
  double number = 0;
  const std::size_t sign = !text.empty() && text.front() == '+' ? 1 : 0;
  const auto parsed = std::from_chars(text.data() + sign, text.data() + text.size(), number);
  return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
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

bool has(const std::vector<std::size_t>& sizes, std::size_t size) {
  return std::find(sizes.begin(), sizes.end(), size) != sizes.end();
}

/// Both are known when all sizes are; a conflict spreads.
std::size_t sum(const std::vector<std::size_t>& sizes) {
  if (has(sizes, conflict)) return conflict;
  return has(sizes, unknown) ? unknown
                             : std::accumulate(sizes.begin(), sizes.end(), std::size_t{0});
}
std::size_t common(const std::vector<std::size_t>& sizes) {
  if (has(sizes, conflict)) return conflict;
  if (has(sizes, unknown)) return unknown;
  Evidence evidence;
  for (const std::size_t size : sizes) evidence.add(size);
  return evidence.size();
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
  std::size_t total = 0;
  for (const std::size_t port : inputs) total += sizes[port];
  std::vector<std::size_t> sources;
  if (isMux(leaf) || isDemux(leaf)) {
    for (std::size_t element = 0; element < total; ++element) sources.push_back(element);
  } else if (isExtractor(leaf)) {
    for (const long index : integers(leaf).value_or(std::vector<long>{0})) {
      if (index <= 0 || static_cast<std::size_t>(index) > total) return {};
      sources.push_back(static_cast<std::size_t>(index) - 1);
    }
  }
  std::size_t next = 0;
  for (const std::size_t output : outputs) {
    for (std::size_t element = 1; element <= sizes[output]; ++element, ++next) {
      if (next == sources.size()) return {};
      std::size_t source = sources[next], input = 0;
      while (source >= sizes[inputs[input]]) source -= sizes[inputs[input++]];
      Route* const last = routes.empty() ? nullptr : &routes.back();
      if (last && last->output == output && last->input == inputs[input] &&
          last->inputFirst + last->count == source + 1)
        ++last->count;
      else
        routes.push_back({output, element, inputs[input], source + 1, 1});
    }
  }
  return next == sources.size() ? routes : std::vector<Route>();
}

}  // namespace

Signals::Signals(const Network& network) : network_(network) {
  for (const Leaf& leaf : network.leaves()) {
    sizes_.emplace_back(leaf.ports.size(), unknown);
    split_.emplace_back(leaf.ports.size(), false);
  }
  solveSizes();
  for (std::size_t leaf = 0; leaf < network.leaves().size(); ++leaf)
    routes_.push_back(routesOf(network.leaves()[leaf], sizes_[leaf]));
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

/// Goes round until nothing new is learnt. A size only ever turns from unknown into known and from
/// known into a conflict.
void Signals::solveSizes() {
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t l = 0; l < network_.leaves().size(); ++l) {
      const Leaf& leaf = network_.leaves()[l];
      const auto inputs = dataPorts(leaf, Direction::In);
      const auto outputs = dataPorts(leaf, Direction::Out);
      const auto sizesOf = [&](const std::vector<std::size_t>& ports) {
        std::vector<std::size_t> sizes;
        for (const std::size_t port : ports) sizes.push_back(sizes_[l][port]);
        return sizes;
      };
      std::vector<Evidence> evidence(leaf.ports.size());
      for (const std::size_t port : inputs) {
        evidence[port].add(leaf.ports[port].size);
        for (const LeafPortIndex driver : network_.nets()[leaf.ports[port].net].drivers)
          evidence[port].add(sizes_[driver.leaf][driver.port]);
      }
      for (const std::size_t port : outputs) evidence[port].add(leaf.ports[port].size);

      if (isMux(leaf)) {
        const auto listed = listedSizes(leaf, inputs.size());
        for (std::size_t i = 0; i < inputs.size(); ++i) evidence[inputs[i]].add(listed[i]);
        for (const std::size_t port : outputs) evidence[port].add(sum(sizesOf(inputs)));
      } else if (isDemux(leaf)) {
        const auto listed = listedSizes(leaf, outputs.size());
        for (std::size_t i = 0; i < outputs.size(); ++i) evidence[outputs[i]].add(listed[i]);
        for (const std::size_t port : inputs) evidence[port].add(sum(sizesOf(outputs)));
      } else if (isExtractor(leaf)) {
        const auto indices = integers(leaf);
        for (const std::size_t port : outputs)
          if (indices) evidence[port].add(indices->size());
      } else if (isElementwise(leaf)) {
        for (const std::size_t port : outputs) evidence[port].add(common(sizesOf(inputs)));
      }
      for (std::size_t port = 0; port < leaf.ports.size(); ++port) {
        changed |= sizes_[l][port] != evidence[port].size();
        sizes_[l][port] = evidence[port].size();
      }
    }
  }
}

bool Signals::readsSplit(std::size_t leaf, const Route& route) const {
  const LeafPort& input = network_.leaves()[leaf].ports[route.input];
  const auto& drivers = network_.nets()[input.net].drivers;
  return std::any_of(drivers.begin(), drivers.end(),
                     [this](LeafPortIndex driver) { return isSplit(driver); });
}

/// A block has elements to keep apart if it puts several inputs together, or reads such elements.
/// The routes of the others say nothing, as all their elements have one value.
void Signals::splitOutputs() {
  std::vector<bool> isApart(network_.leaves().size(), false);
  for (bool changed = true; changed;) {
    changed = false;
    for (std::size_t leaf = 0; leaf < isApart.size(); ++leaf) {
      if (isApart[leaf] || routes_[leaf].empty()) continue;
      const bool joinsInputs = isMux(network_.leaves()[leaf]) && routes_[leaf].size() > 1;
      if (!joinsInputs && std::none_of(routes_[leaf].begin(), routes_[leaf].end(),
                                       [&](const Route& r) { return readsSplit(leaf, r); }))
        continue;
      isApart[leaf] = changed = true;
      for (const Route& route : routes_[leaf])
        split_[leaf][route.output] = sizes_[leaf][route.output] > 1;
    }
  }
  for (std::size_t leaf = 0; leaf < isApart.size(); ++leaf)
    if (!isApart[leaf]) routes_[leaf].clear();
}

}  // namespace torvan::slicer
