#include <orb/zero/io/ModelFile.h>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <orb/zero/Exception.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/io/impl/Loader.h>

namespace orb::zero::io {
namespace {

/// Hands on what the reader meets.
class Tokens : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Tokens> {
 public:
  explicit Tokens(Loader& loader) : loader_(loader) {}

  bool StartObject() { return loader_.beginObject(), true; }
  bool EndObject(rapidjson::SizeType) { return loader_.endObject(), true; }
  bool StartArray() { return loader_.beginArray(), true; }
  bool EndArray(rapidjson::SizeType) { return loader_.endArray(), true; }
  bool Key(const char* text, rapidjson::SizeType size, bool) {
    return loader_.key({text, size}), true;
  }
  bool String(const char* text, rapidjson::SizeType size, bool) {
    return loader_.value(Loader::Form::Text, {text, size}), true;
  }
  bool RawNumber(const char* text, rapidjson::SizeType size, bool) {
    return loader_.value(Loader::Form::Number, {text, size}), true;
  }
  bool Bool(bool value) {
    return loader_.value(Loader::Form::Boolean, value ? "true" : "false"), true;
  }
  bool Null() { return loader_.null(), true; }

 private:
  Loader& loader_;
};

void read(Input& input, Loader& loader) {
  constexpr unsigned flags = rapidjson::kParseIterativeFlag |
                             rapidjson::kParseValidateEncodingFlag |
                             rapidjson::kParseNumbersAsStringsFlag;
  Tokens tokens(loader);
  rapidjson::Reader reader;
  const rapidjson::ParseResult result = reader.Parse<flags>(input, tokens);
  if (input.hasFailed()) throw Refusal{"The stream cannot be read."};
  if (!result) throw Refusal{rapidjson::GetParseError_En(result.Code())};
  if (!input.isAtEnd()) throw Refusal{"The text goes on after the end of the model."};
  loader.finish();
}

}  // namespace

void load(const Model& model, std::istream& in, std::string_view name) {
  Transaction transaction(model);
  Input input(in);
  Loader loader(model, input);
  try {
    read(input, loader);
  } catch (const Refusal& refusal) {
    loader.raiseAt(name, refusal.cause);
  } catch (const Exception& exception) {
    loader.raiseAt(name, exception.what());
  }
  transaction.commit();
}

}  // namespace orb::zero::io
