#include <malloc.h>
#include <orb/zero/io/ModelFile.h>
#include <orb/zero/meta/AbstractMetaPackage.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <torvan/datamodel.h>

#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "benchmarks/Case.h"

namespace torvan::datamodel::benchmarks {
namespace {

namespace io = orb::zero::io;
using orb::zero::Model;
using Writer = rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::UTF8<>,
                                 rapidjson::CrtAllocator, rapidjson::kWriteValidateEncodingFlag>;

constexpr char anyUuid[] = "e2f7bd2c-3c9b-4d3f-9f6c-0d6f6c2b8a41";

/// Models to save, and the tokens of one of their elements.
struct Shape {
  const char* name;
  Model (*make)(std::size_t size);
  void (*write)(Writer& writer, std::size_t i);
};

std::string nameOf(std::size_t i) { return "x" + std::to_string(i); }

Model variables(std::size_t size) {
  const Model model = Model::create();
  const auto type = PowerSetType::Builder(model).create();
  for (std::size_t i = 1; i < size; ++i) {
    Variable::Builder builder(model);
    builder->setType(type);
    builder->setName(nameOf(i));
    builder.create();
  }
  return model;
}

/// A system that owns all other elements.
Model equations(std::size_t size) {
  const Model model = Model::create();
  const auto system = System::Builder(model).create();
  const auto x = Variable::Builder(model).create();
  for (std::size_t i = 2; i < size; ++i) {
    Equation::Builder builder(model);
    builder->setLhs(x);
    builder->setRhs(x);
    system->getEquations().add(builder.create());
  }
  return model;
}

constexpr Shape shapes[] = {{"variables", variables,
                             [](Writer& writer, std::size_t i) {
                               const std::string name = nameOf(i);
                               writer.Key("torvan.datamodel.Variable");
                               writer.String(anyUuid);
                               writer.Key("type");
                               writer.String(anyUuid);
                               writer.Key("name");
                               writer.String(name.data(), static_cast<unsigned>(name.size()));
                             }},
                            {"one owner", equations, [](Writer& writer, std::size_t) {
                               writer.Key("uuid");
                               writer.String(anyUuid);
                               writer.Key("lhs");
                               writer.String(anyUuid);
                               writer.Key("rhs");
                               writer.String(anyUuid);
                             }}};

std::string textOf(const Model& model) {
  std::ostringstream out;
  io::save(model, out);
  return std::move(out).str();
}

/// Bytes of this process in memory, now ("VmRSS:") or at most ("VmHWM:").
double residentBytes(const std::string& wanted) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (double kilobytes = 0; word == wanted && status >> kilobytes) return kilobytes * 1024;
  return 0;
}

void addSave(const Shape& shape, std::size_t size) {
  const std::string name = std::string("save.") + shape.name;
  runSeldom(addCase(name, size, "ours", [&shape, size](benchmark::State& state) {
    const Model model = shape.make(size);
    std::string text;
    measure(state, size, [&] { text = textOf(model); });
    state.counters["bytes"] = static_cast<double>(text.size()) / static_cast<double>(size);
    check(state, !text.empty());
  }));
  runSeldom(addCase(name, size, "floor", [&shape, size](benchmark::State& state) {
    rapidjson::StringBuffer text;
    measure(
        state, size, [&] { text = rapidjson::StringBuffer(); },
        [&] {
          Writer writer(text);
          writer.StartArray();
          for (std::size_t i = 0; i < size; ++i) {
            writer.StartObject();
            shape.write(writer, i);
            writer.EndObject();
          }
          writer.EndArray();
        });
    state.counters["bytes"] = static_cast<double>(text.GetSize()) / static_cast<double>(size);
  }));
}

/// The bytes are what loading takes of memory at its peak; those of the floor, what stays of it.
void addLoad(const Shape& shape, std::size_t size) {
  const std::string name = std::string("load.") + shape.name;
  const auto measureBytes = [size](benchmark::State& state, const char* wanted, auto run) {
    malloc_trim(0);
    const double before = residentBytes("VmRSS:");
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak starts anew
    run();
    malloc_trim(0);
    state.counters["bytes"] = (residentBytes(wanted) - before) / static_cast<double>(size);
  };
  runSeldom(addCase(name, size, "ours", [=, &shape](benchmark::State& state) {
    metaPackage().ensureInitialized();
    std::istringstream in(textOf(shape.make(size)));
    Model model = Model::create();
    measureBytes(state, "VmHWM:", [&] { measure(state, size, [&] { io::load(model, in); }); });
    check(state, model.size() == size);
  }));
  runSeldom(addCase(name, size, "floor", [=, &shape](benchmark::State& state) {
    const std::string text = textOf(shape.make(size));
    std::istringstream input(text);
    const Model model = Model::create();
    measureBytes(state, "VmRSS:", [&] { io::load(model, input); });
    measure(state, size, [&] {
      constexpr unsigned flags =
          rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
      rapidjson::StringStream in(text.c_str());
      rapidjson::BaseReaderHandler<> handler;
      check(state, !rapidjson::Reader().Parse<flags>(in, handler).IsError());
    });
  }));
}

}  // namespace

void addSaveCases() {
  for (const Shape& shape : shapes) {
    for (const std::size_t size : {100'000u, 1'000'000u}) {
      addSave(shape, size);
      addLoad(shape, size);
    }
  }
}

}  // namespace torvan::datamodel::benchmarks
