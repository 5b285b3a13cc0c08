#include "BlockSystem.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

#include <orb/zero/ElementRange.h>

namespace torvan::slicer {

using namespace datamodel;

namespace {

struct PortWord {
  std::string_view text;
  SignalKind kind;
  Direction direction;
};
constexpr PortWord portWords[] = {{"in", SignalKind::Data, Direction::In},
                                  {"out", SignalKind::Data, Direction::Out},
                                  {"eventIn", SignalKind::Event, Direction::In},
                                  {"eventOut", SignalKind::Event, Direction::Out},
                                  {"physicalIn", SignalKind::Implicit, Direction::In},
                                  {"physicalOut", SignalKind::Implicit, Direction::Out}};

[[noreturn]] void fail() { throw std::runtime_error("holds no system of torvan-slice"); }

/// "in1" or "in1[2]".
BlockPort parsePort(std::string_view text) {
  const std::size_t digits = std::min(text.find_first_of("-0123456789"), text.size());
  const auto* const word = std::ranges::find(portWords, text.substr(0, digits), &PortWord::text);
  if (word == std::end(portWords)) fail();
  BlockPort port{word->kind, word->direction, 0, 0, {}};
  const char* const end = text.data() + text.size();
  auto parsed = std::from_chars(text.data() + digits, end, port.number);
  if (parsed.ec == std::errc() && parsed.ptr != end && *parsed.ptr == '[') {
    parsed = std::from_chars(parsed.ptr + 1, end, port.size);
    if (parsed.ptr != end && *parsed.ptr == ']') ++parsed.ptr;
  }
  if (parsed.ec != std::errc() || parsed.ptr != end) fail();
  return port;
}

/// Raises "CyclicValue" for a term that contains itself, which would be compiled without end.
void refuseCycles(const System& system) {
  RefVariableCollector walk;
  for (const Equation& equation : system->getEquations()) {
    walk.dispatch(equation->getLhs());
    walk.dispatch(equation->getRhs());
  }
}

}  // namespace

std::string BlockPort::name() const {
  const auto* const word = std::ranges::find_if(portWords, [this](const PortWord& each) {
    return each.kind == kind && each.direction == direction;
  });
  return std::string(word->text) + std::to_string(number);
}

void BlockSystem::describe() const {
  const orb::zero::Model model = equations->getModel();
  ExpressionFactory expressions(model);
  SystemBuilder builder(model);
  builder.addEquation(expressions.createVariable({}, diagram),
                      expressions.createVariable({}, dependences));
  for (const SystemBlock& block : blocks) {
    const Variable variable = expressions.createVariable({}, block.name);
    builder.addEquation(variable, {});
    for (const BlockPort& port : block.ports) {
      const std::string size = port.size == 0 ? "" : '[' + std::to_string(port.size) + ']';
      builder.addEquation(expressions.createStructRef(variable, port.name() + size),
                          expressions.createJoin(port.reads));
    }
  }
}

BlockSystem BlockSystem::of(const orb::zero::Model& model) {
  std::vector<System> systems;
  for (const ModelElement element : model.elements(System::metaClass()))
    systems.emplace_back(element);
  if (systems.size() != 2 || !systems[1]->hasEquations()) fail();
  for (const System& each : systems) refuseCycles(each);

  const Equation first{systems[1]->getEquations()[0]};
  BlockSystem system{
      systems[0], Variable(first->getLhs())->getName(), Variable(first->getRhs())->getName(), {}};
  for (const Equation& equation : systems[1]->getEquations()) {
    if (equation == first) continue;
    if (!equation->getLhs()->getMetaClass().isKindOf(StructRef::metaClass())) {
      system.blocks.push_back({Variable(equation->getLhs())->getName(), {}});
      continue;
    }
    if (system.blocks.empty()) fail();
    BlockPort port = parsePort(StructRef(equation->getLhs())->getField());
    const auto& reads = Join(equation->getRhs())->getOperands();
    port.reads.assign(reads.begin(), reads.end());
    system.blocks.back().ports.push_back(std::move(port));
  }
  return system;
}

}  // namespace torvan::slicer
