#include "Criterion.h"

#include <string_view>
#include <utility>
#include <vector>

namespace torvan::slicer {
namespace {

/// Whether the block's name without some of its super-blocks, or also without its number, is
/// `name`.
bool fits(const std::string& block, const std::string& name) {
  const std::string whole = '/' + block;
  const std::string kind = whole.substr(0, whole.rfind('#'));
  return whole.ends_with('/' + name) || kind.ends_with('/' + name);
}

/// The input port of this number: a data input, or a physical one listed among the inputs.
std::optional<std::size_t> findInput(const SystemBlock& block, std::size_t number) {
  for (const SignalKind kind : {SignalKind::Data, SignalKind::Implicit})
    for (std::size_t index = 0; index < block.ports.size(); ++index) {
      const BlockPort& port = block.ports[index];
      if (port.kind == kind && port.direction == Direction::In &&
          std::cmp_equal(port.number, number))
        return index;
    }
  return std::nullopt;
}

std::size_t parseNumber(const std::string& digits) {
  return digits.size() < 9 ? std::stoul(digits) : SIZE_MAX;
}

/// A criterion as it is written. Without an input, all of it is the name.
struct Words {
  std::string name, input, element;
};

/// Takes the digits off the end of the text.
std::string takeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(text.find_last_not_of("0123456789") + 1);
  text.remove_suffix(digits.size());
  return std::string(digits);
}

Words split(const std::string& text) {
  Words whole{text, {}, {}};
  std::string_view rest = text;
  std::string element;
  if (rest.ends_with(']')) {
    rest.remove_suffix(1);
    element = takeDigits(rest);
    if (element.empty() || !rest.ends_with('[')) return whole;
    rest.remove_suffix(1);
  }
  const std::string input = takeDigits(rest);
  if (input.empty() || !rest.ends_with(".in")) return whole;
  rest.remove_suffix(3);
  return {std::string(rest), input, element};
}

}  // namespace

CriterionFinder::CriterionFinder(const std::vector<SystemBlock>& blocks) : blocks_(blocks) {
  for (std::size_t block = 0; block < blocks.size(); ++block)
    places_.emplace(blocks[block].name, block);
}

std::size_t CriterionFinder::findBlock(const std::string& name) const {
  if (const auto exact = places_.find(name); exact != places_.end()) return exact->second;
  std::vector<std::size_t> found;
  for (std::size_t block = 0; block < blocks_.size(); ++block)
    if (fits(blocks_[block].name, name)) found.push_back(block);
  if (found.empty()) throw CriterionError("there is no block '" + name + "'");
  if (found.size() == 1) return found.front();
  std::string message = "'" + name + "' is ambiguous:";
  for (const std::size_t block : found) message += ' ' + blocks_[block].name;
  throw CriterionError(message);
}

Criterion CriterionFinder::find(const std::string& text) const {
  const auto [name, input, element] = split(text);
  Criterion criterion{findBlock(name), {}, {}};
  if (input.empty()) return criterion;

  const SystemBlock& block = blocks_[criterion.block];
  criterion.port = findInput(block, parseNumber(input));
  if (!criterion.port) throw CriterionError("'" + block.name + "' has no input " + input);
  if (element.empty()) return criterion;

  criterion.element = parseNumber(element);
  const std::size_t size = block.ports[*criterion.port].size;
  if (*criterion.element == 0 || (size > 0 && *criterion.element > size))
    throw CriterionError("input " + input + " of '" + block.name + "' has no element " + element);
  return criterion;
}

}  // namespace torvan::slicer
