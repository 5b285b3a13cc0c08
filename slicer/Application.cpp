#include "Application.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <iostream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "DiagramReader.h"
#include "Drawing.h"
#include "OutputFile.h"
#include "Slicer.h"

namespace torvan::slicer {
namespace {

struct Options {
  std::string file;
  std::vector<std::string> criteria;
  bool forward = false;
  std::string dependences = "data";
  std::string list;
  std::string format = "text";
  std::string output;
  bool equations = false;
  bool statistics = false;
};

/// A criterion as the user wrote it, and its slice.
struct Result {
  std::string text;
  Criterion criterion;
  std::set<std::size_t> slice;
};

bool hasPort(const Leaf& leaf, Direction direction) {
  return std::any_of(leaf.ports.begin(), leaf.ports.end(), [=](const LeafPort& port) {
    return port.kind == SignalKind::Implicit ||
           (port.kind == SignalKind::Data && port.direction == direction);
  });
}

/// A sink reads signals and sends none, a source the other way round.
bool belongsTo(const Leaf& leaf, const std::string& list) {
  const bool reads = hasPort(leaf, Direction::In), sends = hasPort(leaf, Direction::Out);
  if (list == "sinks") return reads && !sends;
  if (list == "sources") return sends && !reads;
  return true;
}

std::vector<std::string> listOf(const Network& network, const std::string& list) {
  std::vector<std::string> names;
  for (const Leaf& leaf : network.leaves())
    if (belongsTo(leaf, list)) names.push_back(leaf.name);
  return names;
}

std::vector<std::string> namesOf(const Network& network, const std::set<std::size_t>& slice) {
  std::set<std::string> names;
  for (const std::size_t leaf : slice) names.insert(network.leaves()[leaf].name);
  return {names.begin(), names.end()};
}

std::string captionOf(const Options& options, const Network& network, const Result& result) {
  return std::string(options.forward ? "forward" : "backward") + " slice by " + result.text + " (" +
         options.dependences + "): " + std::to_string(result.slice.size()) + " of " +
         std::to_string(network.leaves().size()) + " blocks";
}

std::string asText(const Options& options, const Network& network, const Result& result) {
  std::string text = options.file + ": " + captionOf(options, network, result) + '\n';
  for (const std::string& name : namesOf(network, result.slice)) text += "  " + name + '\n';
  return text;
}

std::string asJson(const Options& options, const Network& network, const Result& result) {
  const nlohmann::ordered_json object = {{"file", options.file},
                                         {"criterion", result.text},
                                         {"deps", options.dependences},
                                         {"direction", options.forward ? "forward" : "backward"},
                                         {"blocks", namesOf(network, result.slice)}};
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

std::string render(const Options& options, const Diagram& diagram, const Network& network,
                   const std::vector<Result>& results) {
  std::string text;
  for (const Result& result : results) {
    const Highlight highlight{result.slice, result.criterion.leaf,
                              captionOf(options, network, result)};
    if (options.format == "svg")
      text += drawSvg(diagram, network, highlight);
    else if (options.format == "dot")
      text += drawDot(network, highlight);
    else
      text += options.format == "json" ? asJson(options, network, result)
                                       : asText(options, network, result);
  }
  return text;
}

/// Tells how far the solver is, on a terminal, once it takes longer than a second.
class ProgressLine {
 public:
  ~ProgressLine() {
    if (isShown_) std::cerr << "\r\033[K";
  }
  void operator()(const FixpointSolver::Statistics& statistics, std::size_t pending) {
    const auto now = std::chrono::steady_clock::now();
    if (!isTerminal_ || now < next_) return;
    next_ = now + std::chrono::milliseconds(200);
    isShown_ = true;
    std::cerr << "\rsolving: " << statistics.evaluations << " evaluations, " << pending
              << " equations waiting\033[K" << std::flush;
  }

 private:
  bool isTerminal_ = isatty(STDERR_FILENO) != 0;
  bool isShown_ = false;
  std::chrono::steady_clock::time_point next_ =
      std::chrono::steady_clock::now() + std::chrono::seconds(1);
};

void printStatistics(const Network& network, const Slicer& slicer, double milliseconds) {
  const auto& statistics = slicer.statistics();
  std::cerr << "blocks       " << network.leaves().size() << "\nvariables    "
            << statistics.variables << "\nequations    " << statistics.equations
            << "\nevaluations  " << statistics.evaluations << "\nelements     "
            << slicer.system()->getModel().size() << " (" << statistics.reclaimed
            << " reclaimed)\nsolved in    " << milliseconds << " ms\n";
}

Options parse(int argc, char** argv, CLI::App& app) {
  Options options;
  app.description("Slices a block diagram: finds the blocks that influence a block.");
  app.add_option("file", options.file, "a .zcos or .xcos file")->required();
  app.add_option("--criterion", options.criteria,
                 "NAME, NAME.inN or NAME.inN[K]; may be repeated; all sinks without any");
  auto* const backward =
      app.add_flag("--backward")->description("what influences the criterion (default)");
  app.add_flag("--forward", options.forward, "what the criterion influences")->excludes(backward);
  app.add_option("--deps", options.dependences, "what counts as an influence")
      ->check(CLI::IsMember({"data", "activation", "direct"}))
      ->capture_default_str();
  app.add_option("--list", options.list, "list blocks instead of slicing")
      ->check(CLI::IsMember({"sinks", "sources", "blocks"}));
  app.add_option("--format", options.format)
      ->check(CLI::IsMember({"text", "json", "dot", "svg"}))
      ->capture_default_str();
  app.add_option("-o", options.output, "write to a file instead of standard output");
  app.add_flag("--equations", options.equations, "print the equations as well");
  app.add_flag("--stats", options.statistics, "print statistics to standard error");
  app.parse(argc, argv);
  return options;
}

int slice(const Options& options) {
  const Diagram diagram = readDiagram(options.file);
  const Network network(diagram);
  for (const std::string& warning : diagram.warnings)
    std::cerr << "torvan-slice: warning: " << options.file << ": " << warning << '\n';
  if (!options.list.empty()) {
    std::string text;
    for (const std::string& name : listOf(network, options.list)) text += name + '\n';
    writeOutput(text, options.output);
    return 0;
  }

  const Signals signals(network);
  std::vector<Result> results;
  for (const std::string& text :
       options.criteria.empty() ? listOf(network, "sinks") : options.criteria)
    results.push_back({text, findCriterion(network, signals, text), {}});
  if (results.size() != 1 && (options.format == "svg" || options.format == "dot"))
    throw CriterionError("a picture shows the slice by one criterion, not by " +
                         std::to_string(results.size()));
  for (const Result& result : results)
    if (options.forward && result.criterion.port)
      throw CriterionError("a forward slice starts at a block, not at an input: " + result.text);

  const auto start = std::chrono::steady_clock::now();
  const Dependences dependences = options.dependences == "data"     ? Dependences::Data
                                  : options.dependences == "direct" ? Dependences::Direct
                                                                    : Dependences::Activation;
  Slicer slicer = [&] {
    ProgressLine progress;
    return Slicer(network, signals, dependences, std::ref(progress));
  }();
  for (Result& result : results)
    result.slice =
        options.forward ? slicer.forward(result.criterion) : slicer.backward(result.criterion);
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;

  std::string text;
  if (options.equations)
    for (const datamodel::Equation& equation : slicer.system()->getEquations())
      text += equation.print() + '\n';
  writeOutput(text + render(options, diagram, network, results), options.output);
  if (options.statistics) printStatistics(network, slicer, taken.count());
  return 0;
}

}  // namespace

int runApplication(int argc, char** argv) {
  CLI::App app("", "torvan-slice");
  Options options;
  try {
    options = parse(argc, argv, app);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  return slice(options);
}

}  // namespace torvan::slicer
