#include <orb/zero/io/ModelFile.h>
#include <orb/zero/meta/AbstractMetaPackage.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <torvan/datamodel.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "benchmarks/Case.h"
#include "benchmarks/Memory.h"

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
Model modelOf(const std::string& text) {
  std::istringstream in(text);
  Model model = Model::create();
  io::load(model, in);
  return model;
}

void addSave(Cases& cases, const Shape& shape, std::size_t size) {
  const std::string name = std::string("save.") + shape.name;
  const double million = static_cast<double>(size) / 1e6;
  const auto save = [&shape, size] {
    const Model model = shape.make(size);
    const auto text = std::make_shared<std::string>();
    const auto result = [=] {
      check(modelOf(*text).size() == size);
      return size;
    };
    return Side{.run = [=] { *text = textOf(model); }, .result = result};
  };
  const auto write = [&shape, size] {
    const auto text = std::make_shared<rapidjson::StringBuffer>();
    const auto run = [=, &shape] {
      Writer writer(*text);
      writer.StartArray();
      for (std::size_t i = 0; i < size; ++i) {
        writer.StartObject();
        shape.write(writer, i);
        writer.EndObject();
      }
      writer.EndArray();
    };
    const auto result = [=] {
      const std::string_view written(text->GetString(), text->GetSize());
      return static_cast<std::uint64_t>(std::count(written.begin(), written.end(), '{'));
    };
    return Side{
        .run = run, .prepare = [=] { *text = rapidjson::StringBuffer(); }, .result = result};
  };
  cases.push_back({.name = name,
                   .size = size,
                   .unit = seconds,
                   .targets = {atMost(0.6 * million)},
                   .sides = {{"ours", save}, {"raw", write}}});
  const auto sizeOfText = [&shape, size] {
    return Side{
        .amount = [&shape, size] { return static_cast<double>(textOf(shape.make(size)).size()); }};
  };
  cases.push_back({.name = name + ", file",
                   .size = size,
                   .items = size,
                   .unit = bytes,
                   .targets = {atMost(140)},
                   .sides = {{"ours", sizeOfText}}});
}

/// Loads into an empty model; the other side only reads the text.
void addLoad(Cases& cases, const Shape& shape, std::size_t size) {
  const std::string name = std::string("load.") + shape.name;
  const double million = static_cast<double>(size) / 1e6;
  const auto load = [&shape, size] {
    metaPackage().ensureInitialized();
    const auto text = std::make_shared<std::string>(textOf(shape.make(size)));
    const auto model = std::make_shared<std::optional<Model>>();
    const auto result = [=] {
      check(textOf(**model) == *text);
      return std::uint64_t{0};
    };
    return Side{.run = [=] { *model = modelOf(*text); },
                .finish = [=] { model->reset(); },
                .result = result};
  };
  const auto read = [&shape, size] {
    const auto text = std::make_shared<std::string>(textOf(shape.make(size)));
    return Side{.run = [=] {
      constexpr unsigned flags =
          rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
      rapidjson::StringStream in(text->c_str());
      rapidjson::BaseReaderHandler<> handler;
      check(!rapidjson::Reader().Parse<flags>(in, handler).IsError());
    }};
  };
  cases.push_back({.name = name,
                   .size = size,
                   .unit = seconds,
                   .targets = {atMost(1.2 * million)},
                   .sides = {{"ours", load}, {"raw", read}}});

  /// What loading takes of memory, at its peak or in the end.
  const auto memory = [&shape, size](Resident which) {
    return [&shape, size, which] {
      return Side{.amount = [&shape, size, which] {
        std::istringstream in(textOf(shape.make(size)));
        const Model model = Model::create();
        return memoryTaken(which, [&] { io::load(model, in); });
      }};
    };
  };
  cases.push_back({.name = name + ", peak of memory",
                   .size = size,
                   .items = size,
                   .unit = bytes,
                   .targets = {timesOf(1.3, "kept")},
                   .sides = {{"ours", memory(Resident::Peak)}, {"kept", memory(Resident::Now)}}});
}

}  // namespace

void addSaveCases(Cases& cases) {
  for (const Shape& shape : shapes) {
    for (const std::size_t size : {100'000u, 1'000'000u}) {
      addSave(cases, shape, size);
      addLoad(cases, shape, size);
    }
  }
}

}  // namespace torvan::datamodel::benchmarks
