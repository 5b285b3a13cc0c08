#include "DependenceSystem.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

namespace torvan::slicer {

using namespace datamodel;

namespace {

BlockPort describedPort(const LeafPort& port) {
  return {port.kind, port.direction, port.number, 0, {}};
}

std::string nameOf(const LeafPort& port) { return describedPort(port).name(); }

/// The data input that chooses between the others; 0 for a block that does not choose.
int controlOf(const Leaf& leaf) {
  if (leaf.kind == "SWITCH2_m") return 2;
  return leaf.kind == "M_SWITCH" ? 1 : 0;
}

void append(std::vector<Term>& terms, const std::vector<Term>& more) {
  terms.insert(terms.end(), more.begin(), more.end());
}

}  // namespace

DependenceSystem::DependenceSystem(const Network& network, const Signals& signals,
                                   Dependences dependences)
    : network_(network),
      signals_(signals),
      dependences_(dependences),
      expressions_(*session_.expressionFactory()),
      builder_(session_.createSystemBuilder()) {
  const std::size_t size = network.leaves().size();
  if (size > UINT16_MAX) throw std::length_error("more than 65535 blocks");
  std::vector<std::string> names;
  for (const Leaf& leaf : network.leaves()) names.push_back(leaf.name);
  leafSet_ = session_.typeFactory()->createPowerSetType("leaves", names);
  for (std::size_t leaf = 0; leaf < size; ++leaf) {
    BitSet self(size);
    self.set(leaf);
    selves_.push_back(session_.valueFactory()->createPowerSet(leafSet_, self));
  }
  for (std::size_t leaf = 0; leaf < size; ++leaf) declareLeaf(leaf);
  for (std::size_t net = 0; net < network.nets().size(); ++net) declareNet(net);
  for (std::size_t leaf = 0; leaf < size; ++leaf) addEquations(leaf);
}

bool DependenceSystem::carries(const LeafPort& port, Direction direction) const {
  return goes(port, direction) &&
         (port.kind != SignalKind::Event || dependences_ == Dependences::Activation);
}

// ---------------------------------------------------------------- types and variables
ArrayType DependenceSystem::vectorType(std::size_t size) {
  ArrayType& type = vectorTypes_[size];
  if (!type)
    type = session_.typeFactory()->createArrayType("leaves^" + std::to_string(size), leafSet_,
                                                   static_cast<std::uint16_t>(size));
  return type;
}

Term DependenceSystem::self(std::size_t leaf, std::size_t count) {
  if (count == 1) return selves_[leaf];
  std::vector<std::uint16_t> indices;
  for (std::size_t index = 1; index <= count; ++index)
    indices.push_back(static_cast<std::uint16_t>(index));
  return session_.valueFactory()->createArray(vectorType(count), indices,
                                              std::vector<LatticeValue>(count, selves_[leaf]));
}

void DependenceSystem::declareLeaf(std::size_t leaf) {
  const auto& ports = leafAt(leaf).ports;
  std::vector<std::size_t> outputs;
  std::vector<std::string> names;
  std::vector<LatticeType> types;
  for (std::size_t port = 0; port < ports.size(); ++port) {
    if (!isOutput(ports[port])) continue;
    outputs.push_back(port);
    names.push_back(nameOf(ports[port]));
    types.push_back(signals_.isSplit({leaf, port})
                        ? LatticeType(vectorType(signals_.size({leaf, port})))
                        : LatticeType(leafSet_));
  }
  const std::string& name = leafAt(leaf).name;
  places_.emplace_back(ports.size());
  seen_.emplace_back(ports.size());
  if (outputs.size() == 1) {
    places_[leaf][outputs.front()] = expressions_.createVariable(types.front(), name);
  } else if (!outputs.empty()) {
    const Variable record = expressions_.createVariable(
        session_.typeFactory()->createStructType(name, names, types), name);
    for (std::size_t i = 0; i < outputs.size(); ++i)
      places_[leaf][outputs[i]] = expressions_.createStructRef(record, names[i]);
  }
}

void DependenceSystem::declareNet(std::size_t net) {
  const auto& ports = network_.nets()[net].drivers;
  if (network_.nets()[net].kind != SignalKind::Implicit || ports.size() < 2) return;
  std::vector<std::string> names;
  for (const LeafPortIndex port : ports)
    names.push_back(leafAt(port.leaf).name + '.' + nameOf(portAt(port)));
  const std::string name = "net" + std::to_string(net);
  const StructType type = session_.typeFactory()->createStructType(
      name, names, std::vector<LatticeType>(ports.size(), leafSet_));
  const Variable all = expressions_.createVariable(type, name);
  for (std::size_t i = 0; i < ports.size(); ++i) {
    builder_->addEquation(expressions_.createStructRef(all, names[i]), placeOf(ports[i]));
    const Variable others = expressions_.createVariable(type, names[i]);
    builder_->addEquation(others, expressions_.createPrune(all, {names[i]}));
    for (std::size_t j = 0; j < ports.size(); ++j)
      if (ports[j].leaf != ports[i].leaf)
        seen_[ports[i].leaf][ports[i].port].push_back(
            expressions_.createStructRef(others, names[j]));
  }
}

// ---------------------------------------------------------------- what is read
LExpression DependenceSystem::elementsOf(LeafPortIndex output, std::size_t first,
                                         std::size_t count) const {
  LExpression all = placeOf(output);
  if (!signals_.isSplit(output) || count == signals_.size(output)) return all;
  return expressions_.createIndexRef(all, static_cast<std::uint16_t>(first),
                                     static_cast<std::uint16_t>(first + count - 1));
}

DependenceSystem::Terms DependenceSystem::input(LeafPortIndex port) const {
  if (portAt(port).kind == SignalKind::Implicit) return seen_[port.leaf][port.port];
  Terms terms;
  for (const LeafPortIndex driver : network_.nets()[portAt(port).net].drivers) {
    if (!signals_.isSplit(driver)) {
      terms.push_back(placeOf(driver));
    } else {
      for (std::size_t each = 1; each <= signals_.size(driver); ++each)
        terms.push_back(elementsOf(driver, each, 1));
    }
  }
  return terms;
}

DependenceSystem::Terms DependenceSystem::terms(std::size_t leaf, bool withData) const {
  Terms all;
  const auto& ports = leafAt(leaf).ports;
  for (std::size_t port = 0; port < ports.size(); ++port)
    if (isInput(ports[port]) && (withData || ports[port].kind != SignalKind::Data))
      append(all, input({leaf, port}));
  return all;
}

BlockSystem DependenceSystem::describe(const std::string& diagram,
                                       const std::string& dependences) const {
  BlockSystem system{builder_->build(), diagram, dependences, {}};
  for (std::size_t leaf = 0; leaf < network_.leaves().size(); ++leaf) {
    SystemBlock& block = system.blocks.emplace_back();
    block.name = leafAt(leaf).name;
    for (std::size_t index = 0; index < leafAt(leaf).ports.size(); ++index) {
      const LeafPort& port = leafAt(leaf).ports[index];
      if (port.kind == SignalKind::Event && !isInput(port)) continue;
      BlockPort& described = block.ports.emplace_back(describedPort(port));
      if (!isInput(port)) continue;
      described.size = port.kind == SignalKind::Data ? signals_.drivenSize({leaf, index}) : 1;
      if (port.kind == SignalKind::Implicit) {
        described.reads = seen_[leaf][index];
      } else {
        for (const LeafPortIndex driver : network_.nets()[port.net].drivers)
          described.reads.push_back(placeOf(driver));
      }
    }
  }
  system.describe();
  return system;
}

// ---------------------------------------------------------------- equations
void DependenceSystem::addEquation(const LExpression& lhs, const Terms& influences) {
  builder_->addEquation(
      lhs, influences.size() == 1 ? influences.front() : expressions_.createJoin(influences));
}

void DependenceSystem::addEquations(std::size_t leaf) {
  const auto& ports = leafAt(leaf).ports;
  const auto& routes = signals_.routes(leaf);
  const bool isDelay = dependences_ == Dependences::Direct && !leafAt(leaf).feedthrough;
  Terms mixed = isDelay ? Terms{self(leaf)} : mixture(leaf);
  std::vector<std::size_t> mixing;  // outputs
  bool isSink = true;
  for (std::size_t port = 0; port < ports.size(); ++port) {
    if (!isOutput(ports[port])) continue;
    isSink = false;
    const bool isRouted = std::any_of(routes.begin(), routes.end(),
                                      [=](const Route& route) { return route.output == port; });
    if (!isRouted)
      mixing.push_back(port);
    else if (isDelay)
      addEquation(places_[leaf][port], {self(leaf, signals_.size({leaf, port}))});
    else
      addRoutedEquations(leaf, port);
  }
  if (isSink || (mixing.size() > 1 && mixed.size() > 2)) {
    const std::string& name = leafAt(leaf).name;
    const Variable read = expressions_.createVariable(leafSet_, isSink ? name : name + ".inputs");
    addEquation(read, mixed);
    mixed = {read};
  }
  for (const std::size_t port : mixing) addEquation(places_[leaf][port], mixed);
}

/// A block that chooses between its inputs makes a conditional of them.
DependenceSystem::Terms DependenceSystem::mixture(std::size_t leaf) {
  const Leaf& block = leafAt(leaf);
  const auto control = block.findPort(SignalKind::Data, Direction::In, controlOf(block));
  Terms deciding, chosen;
  for (std::size_t port = 0; port < block.ports.size(); ++port)
    if (block.ports[port].kind == SignalKind::Data && isInput(block.ports[port]))
      append(port == control ? deciding : chosen, input({leaf, port}));

  Terms influences{self(leaf)};
  if (deciding.empty() || chosen.size() < 2) {
    append(influences, terms(leaf, true));
    return influences;
  }
  append(influences, terms(leaf, false));
  const Expression decision =
      deciding.size() == 1 ? Expression{deciding.front()} : expressions_.createJoin(deciding);
  Term choice = chosen.back();
  for (std::size_t other = chosen.size() - 1; other-- > 0;)
    choice = expressions_.createConditional(decision, chosen[other], choice);
  influences.push_back(choice);
  return influences;
}

/// One equation for all elements that are routed alike; element by element where a range has to be
/// read from a signal whose elements are not followed apart.
void DependenceSystem::addRoutedEquations(std::size_t leaf, std::size_t output) {
  const Terms others = terms(leaf, false);
  const auto addRange = [&](std::size_t first, std::size_t count, std::size_t skip,
                            std::size_t size) {
    Terms influences{self(leaf, size)};
    append(influences, others);
    for (const Route& route : signals_.routes(leaf)) {
      if (route.output != output || route.outputFirst != first || route.count != count) continue;
      for (const LeafPortIndex driver :
           network_.nets()[leafAt(leaf).ports[route.input].net].drivers)
        influences.push_back(elementsOf(driver, route.inputFirst + skip, size));
    }
    addEquation(elementsOf({leaf, output}, first + skip, size), influences);
  };

  std::set<std::pair<std::size_t, std::size_t>> ranges;
  for (const Route& route : signals_.routes(leaf))
    if (route.output == output) ranges.emplace(route.outputFirst, route.count);
  for (const auto& [first, count] : ranges) {
    if (count > 1 && others.empty() && readsVectorsOnly(leaf, output, first)) {
      addRange(first, count, 0, count);
    } else {
      for (std::size_t skip = 0; skip < count; ++skip) addRange(first, count, skip, 1);
    }
  }
}

bool DependenceSystem::readsVectorsOnly(std::size_t leaf, std::size_t output,
                                        std::size_t first) const {
  return std::all_of(
      signals_.routes(leaf).begin(), signals_.routes(leaf).end(), [&](const Route& route) {
        if (route.output != output || route.outputFirst != first) return true;
        const auto& drivers = network_.nets()[leafAt(leaf).ports[route.input].net].drivers;
        return std::all_of(drivers.begin(), drivers.end(),
                           [this](LeafPortIndex driver) { return signals_.isSplit(driver); });
      });
}

}  // namespace torvan::slicer
