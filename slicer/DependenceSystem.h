#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <torvan/datamodel.h>

#include "BlockSystem.h"
#include "Network.h"
#include "Signals.h"

namespace torvan::slicer {

/// What counts as an influence: data and physical links; these and activations; or data and
/// physical links that act without delay.
enum class Dependences { Data, Activation, Direct };

/// The equations behind the slices of a network. The universe is its leaf blocks; the value of a
/// signal is the set of the leaves that influence it.
///
/// Every leaf has a variable for what it sends: a set, an array of sets where the elements of a
/// vector are followed apart, or a record with a field per port of a leaf with several outputs. A
/// leaf without outputs has one for what it reads and itself, and so has one of which several
/// outputs mix several inputs. What is sent is what is read and the leaf itself. A physical net has
/// a record with a field per port, of which each port sees all but its own.
class DependenceSystem {
 public:
  /// Both arguments have to outlive the object. Throws std::length_error for more than 65535
  /// leaves.
  DependenceSystem(const Network& network, const Signals& signals, Dependences dependences);

  /// The equations with what is known of the leaves, which is added to their model: to be called
  /// once. It stays when this object goes. The texts say of what diagram and dependences it is.
  BlockSystem describe(const std::string& diagram, const std::string& dependences) const;

 private:
  using Terms = std::vector<datamodel::Term>;

  /// Whether influence comes in, or goes out, by the port.
  bool carries(const LeafPort& port, Direction direction) const;
  bool isInput(const LeafPort& port) const { return carries(port, Direction::In); }
  bool isOutput(const LeafPort& port) const { return carries(port, Direction::Out); }
  const Leaf& leafAt(std::size_t leaf) const { return network_.leaves()[leaf]; }
  const LeafPort& portAt(LeafPortIndex at) const { return leafAt(at.leaf).ports[at.port]; }
  datamodel::LExpression placeOf(LeafPortIndex output) const {
    return places_[output.leaf][output.port];
  }
  /// Some elements of what a port sends; all that it sends when they are not followed apart.
  datamodel::LExpression elementsOf(LeafPortIndex output, std::size_t first,
                                    std::size_t count) const;
  /// What reaches an input port, as sets: those of all elements.
  Terms input(LeafPortIndex port) const;
  /// What a leaf reads, with or without its data inputs.
  Terms terms(std::size_t leaf, bool withData) const;
  /// The influence of a leaf itself: a set, or an array of `count` such sets.
  datamodel::Term self(std::size_t leaf, std::size_t count = 1);
  datamodel::ArrayType vectorType(std::size_t size);

  void declareLeaf(std::size_t leaf);
  void declareNet(std::size_t net);
  void addEquations(std::size_t leaf);
  void addRoutedEquations(std::size_t leaf, std::size_t output);
  /// Whether all that the elements from `first` follow are elements followed apart.
  bool readsVectorsOnly(std::size_t leaf, std::size_t output, std::size_t first) const;
  void addEquation(const datamodel::LExpression& lhs, const Terms& influences);
  /// What a leaf makes of all that it reads.
  Terms mixture(std::size_t leaf);

  const Network& network_;
  const Signals& signals_;
  Dependences dependences_;
  datamodel::Session session_;
  datamodel::ExpressionFactory& expressions_;
  std::unique_ptr<datamodel::SystemBuilder> builder_;
  datamodel::PowerSetType leafSet_;
  std::vector<datamodel::PowerSet> selves_;
  std::map<std::size_t, datamodel::ArrayType> vectorTypes_;
  std::vector<std::vector<datamodel::LExpression>> places_;  // per leaf and port: what it sends
  std::vector<std::vector<Terms>> seen_;                     // per leaf and physical port
};

}  // namespace torvan::slicer
