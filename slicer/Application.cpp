#include "Application.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "Archive.h"
#include "DependenceSystem.h"
#include "DiagramReader.h"
#include "Drawing.h"
#include "Escape.h"
#include "OutputFile.h"
#include "Slicer.h"
#include "SystemFile.h"

namespace torvan::slicer {
namespace {

struct Options {
  std::string file;
  std::vector<std::string> criteria;
  bool forward = false;
  std::string dependences;  // as given: the default is "data"
  std::string list;
  std::string format = "text";
  std::string output = "-";
  std::string system;  // where to save it, if anywhere
  bool equations = false;
  bool statistics = false;
};

/// What the file holds: a diagram and its system, or a system alone.
struct Source {
  std::optional<Diagram> diagram;
  std::optional<Network> network;
  BlockSystem system;
};

/// A criterion as the user wrote it, and its slice.
struct Result {
  std::string text;
  Criterion criterion;
  std::set<std::size_t> slice;
};

bool hasPort(const SystemBlock& block, Direction direction) {
  return std::any_of(block.ports.begin(), block.ports.end(), [=](const BlockPort& port) {
    return port.kind != SignalKind::Event && goes(port, direction);
  });
}

/// A sink reads signals and sends none, a source the other way round.
bool belongsTo(const SystemBlock& block, const std::string& list) {
  const bool reads = hasPort(block, Direction::In), sends = hasPort(block, Direction::Out);
  if (list == "sinks") return reads && !sends;
  if (list == "sources") return sends && !reads;
  return true;
}

std::vector<std::string> listOf(const BlockSystem& system, const std::string& list) {
  std::vector<std::string> names;
  for (const SystemBlock& block : system.blocks)
    if (belongsTo(block, list)) names.push_back(block.name);
  return names;
}

std::vector<std::string> namesOf(const BlockSystem& system, const std::set<std::size_t>& slice) {
  std::set<std::string> names;
  for (const std::size_t block : slice) names.insert(system.blocks[block].name);
  return {names.begin(), names.end()};
}

std::string captionOf(const Options& options, const BlockSystem& system, const Result& result) {
  return std::string(options.forward ? "forward" : "backward") + " slice by " + result.text + " (" +
         system.dependences + "): " + std::to_string(result.slice.size()) + " of " +
         std::to_string(system.blocks.size()) + " blocks";
}

std::string asText(const Options& options, const BlockSystem& system, const Result& result) {
  std::string text = system.diagram + ": " + captionOf(options, system, result) + '\n';
  for (const std::string& name : namesOf(system, result.slice)) text += "  " + name + '\n';
  return text;
}

std::string asJson(const Options& options, const BlockSystem& system, const Result& result) {
  const nlohmann::ordered_json object = {{"file", system.diagram},
                                         {"criterion", result.text},
                                         {"deps", system.dependences},
                                         {"direction", options.forward ? "forward" : "backward"},
                                         {"blocks", namesOf(system, result.slice)}};
  return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

bool isPicture(const std::string& format) { return format == "svg" || format == "dot"; }

std::string render(const Options& options, const Source& source,
                   const std::vector<Result>& results) {
  std::string text;
  for (const Result& result : results) {
    if (!isPicture(options.format)) {
      text += options.format == "json" ? asJson(options, source.system, result)
                                       : asText(options, source.system, result);
      continue;
    }
    const Highlight highlight{result.slice, result.criterion.block,
                              captionOf(options, source.system, result),
                              source.system.dependences == "activation"};
    text += options.format == "svg" ? drawSvg(*source.diagram, *source.network, highlight)
                                    : drawDot(*source.network, highlight);
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

void printStatistics(const BlockSystem& system, const Slicer& slicer, double milliseconds) {
  const auto& statistics = slicer.statistics();
  std::cerr << "blocks       " << system.blocks.size() << "\nvariables    " << statistics.variables
            << "\nequations    " << statistics.equations << "\nevaluations  "
            << statistics.evaluations << "\nelements     " << system.equations->getModel().size()
            << " (" << statistics.reclaimed << " reclaimed)\nsolved in    " << milliseconds
            << " ms\n";
}

/// An empty name would count as one that is not given.
std::string checkName(const std::string& name) { return name.empty() ? "the name is empty" : ""; }

Options parse(int argc, char** argv, CLI::App& app) {
  Options options;
  app.description("Slices a block diagram: finds the blocks that influence a block.");
  app.add_option("file", options.file, "a .zcos or .xcos file, or a saved system")
      ->required()
      ->check(checkName);
  auto* const criteria =
      app.add_option("--criterion", options.criteria,
                     "slice by NAME, NAME.inN or NAME.inN[K]; may be repeated; without it, by each "
                     "sink on its own")
          ->allow_extra_args(false);
  auto* const backward =
      app.add_flag("--backward")->description("what influences the criterion (default)");
  auto* const forward = app.add_flag("--forward", options.forward, "what the criterion influences");
  forward->excludes(backward);
  app.add_option("--deps", options.dependences,
                 "what counts as an influence; fixed in a saved system")
      ->check(CLI::IsMember({"data", "activation", "direct"}))
      ->default_str("data");
  auto* const list = app.add_option("--list", options.list, "list blocks instead of slicing")
                         ->check(CLI::IsMember({"sinks", "sources", "blocks"}));
  app.add_option("--format", options.format,
                 "how slices are written; only text with --list or --equations")
      ->check(CLI::IsMember({"text", "json", "dot", "svg"}))
      ->capture_default_str();
  app.add_option("-o", options.output, "write to a file instead of standard output")
      ->check(checkName);
  app.add_option("--save", options.system,
                 "save the system of equations as well, to be sliced again later")
      ->check(checkName);
  auto* const equations =
      app.add_flag("--equations", options.equations, "print the equations as well, as text");
  auto* const statistics =
      app.add_flag("--stats", options.statistics, "print statistics to standard error");
  for (auto* const each : {criteria, backward, forward, equations, statistics})
    list->excludes(each);
  app.parse(argc, argv);
  for (const auto* const each : {list, equations})
    if (*each && options.format != "text")
      throw CLI::ExcludesError(each->get_name(), "--format " + options.format);
  return options;
}

void warn(const Options& options, const std::string& warning) {
  std::cerr << "torvan-slice: warning: " << cleanText(options.file + ": " + warning) << '\n';
}

Source readSource(const Options& options) {
  const std::string bytes = readFile(options.file);
  if (looksLikeSystem(bytes)) {
    Source source{{}, {}, loadSystem(options.file)};
    if (!options.dependences.empty() && options.dependences != source.system.dependences)
      throw CriterionError(options.file + ": the saved system is that of '--deps " +
                           source.system.dependences + "'");
    if (isPicture(options.format))
      throw CriterionError(options.file + ": a picture needs the diagram, not a saved system");
    return source;
  }
  Source source{readDiagram(bytes, options.file), {}, {}};
  for (const std::string& warning : source.diagram->warnings) warn(options, warning);
  const Network& network = source.network.emplace(*source.diagram);
  const std::string dependences = options.dependences.empty() ? "data" : options.dependences;
  source.system = DependenceSystem(network, Signals(network),
                                   dependences == "data"     ? Dependences::Data
                                   : dependences == "direct" ? Dependences::Direct
                                                             : Dependences::Activation)
                      .describe(cleanText(options.file), dependences);
  return source;
}

/// Refuses to write what is read, or one file twice.
void checkTargets(const Options& options, bool isSystem) {
  std::vector<std::string> used{options.file}, targets;
  if (isSystem) used = filesOf(options.file);
  if (!options.system.empty()) targets = filesOf(options.system);
  if (options.output != "-") targets.push_back(options.output);
  for (const std::string& target : targets) {
    for (const std::string& file : used) {
      std::error_code none;
      if (file == target || std::filesystem::equivalent(file, target, none))
        throw CriterionError("'" + target + "' is not overwritten, as this run reads or writes it");
    }
    used.push_back(target);
  }
}

/// What is to be sliced by; the slices are still empty.
std::vector<Result> findCriteria(const Options& options, const BlockSystem& system) {
  const CriterionFinder finder(system.blocks);
  std::vector<Result> results;
  for (const std::string& text :
       options.criteria.empty() ? listOf(system, "sinks") : options.criteria)
    results.push_back({text, finder.find(text), {}});
  const bool slicesOnly = options.system.empty() && !options.equations && !options.statistics;
  if (results.empty() && slicesOnly)
    warn(options, "has no sinks to slice by; name a block by --criterion");
  if (results.size() != 1 && isPicture(options.format))
    throw CriterionError("a picture shows the slice by one criterion, not by " +
                         std::to_string(results.size()));
  for (const Result& result : results)
    if (options.forward && result.criterion.port)
      throw CriterionError("a forward slice starts at a block, not at an input: " + result.text);
  return results;
}

int slice(const Options& options) {
  const Source source = readSource(options);
  checkTargets(options, !source.diagram);
  const BlockSystem& system = source.system;
  std::vector<Result> results;
  if (options.list.empty()) results = findCriteria(options, system);
  if (!options.system.empty()) saveSystem(system, options.system);
  if (!options.list.empty()) {
    std::string text;
    for (const std::string& name : listOf(system, options.list)) text += name + '\n';
    writeOutput(text, options.output);
    return 0;
  }

  const auto start = std::chrono::steady_clock::now();
  Slicer slicer = [&] {
    ProgressLine progress;
    return Slicer(system, std::ref(progress));
  }();
  for (Result& result : results)
    result.slice =
        options.forward ? slicer.forward(result.criterion) : slicer.backward(result.criterion);
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;

  std::string text;
  if (options.equations)
    for (const datamodel::Equation& equation : system.equations->getEquations())
      text += equation.print() + '\n';
  writeOutput(text + render(options, source, results), options.output);
  if (options.statistics) printStatistics(system, slicer, taken.count());
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
