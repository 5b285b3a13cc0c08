#include "Criterion.h"

#include <climits>
#include <regex>
#include <vector>

namespace torvan::slicer {
namespace {

/// Whether the leaf's name without some of its super-blocks, or also without its number, is `name`.
bool fits(const std::string& leaf, const std::string& name) {
  const std::string whole = '/' + leaf;
  const std::string kind = whole.substr(0, whole.rfind('#'));
  return whole.ends_with('/' + name) || kind.ends_with('/' + name);
}

std::size_t findLeaf(const Network& network, const std::string& name) {
  if (const auto exact = network.findLeaf(name)) return *exact;
  std::vector<std::size_t> found;
  for (std::size_t leaf = 0; leaf < network.leaves().size(); ++leaf)
    if (fits(network.leaves()[leaf].name, name)) found.push_back(leaf);
  if (found.empty()) throw CriterionError("there is no block '" + name + "'");
  if (found.size() == 1) return found.front();
  std::string message = "'" + name + "' is ambiguous:";
  for (const std::size_t leaf : found) message += ' ' + network.leaves()[leaf].name;
  throw CriterionError(message);
}

/// The input port of this number: a data input, or a physical one listed among the inputs.
std::optional<std::size_t> findInput(const Leaf& leaf, int number) {
  for (const SignalKind kind : {SignalKind::Data, SignalKind::Implicit})
    if (const auto port = leaf.findPort(kind, Direction::In, number)) return port;
  return std::nullopt;
}

std::size_t parseNumber(const std::string& digits) {
  return digits.size() < 9 ? std::stoul(digits) : SIZE_MAX;
}

}  // namespace

Criterion findCriterion(const Network& network, const Signals& signals, const std::string& text) {
  static const std::regex shape(R"(([^]*?)(?:\.in(\d+)(?:\[(\d+)\])?)?)");
  std::smatch match;
  std::regex_match(text, match, shape);
  Criterion criterion{findLeaf(network, match[1]), {}, {}};
  if (!match[2].matched) return criterion;

  const Leaf& leaf = network.leaves()[criterion.leaf];
  const std::size_t number = parseNumber(match[2]);
  criterion.port = number > INT_MAX ? std::nullopt : findInput(leaf, static_cast<int>(number));
  if (!criterion.port) throw CriterionError("'" + leaf.name + "' has no input " + match[2].str());
  if (!match[3].matched) return criterion;

  criterion.element = parseNumber(match[3]);
  const std::size_t size = leaf.ports[*criterion.port].kind == SignalKind::Data
                               ? signals.drivenSize({criterion.leaf, *criterion.port})
                               : 1;
  if (*criterion.element == 0 || (size > 0 && *criterion.element > size)) {
    throw CriterionError("input " + match[2].str() + " of '" + leaf.name + "' has no element " +
                         match[3].str());
  }
  return criterion;
}

}  // namespace torvan::slicer
