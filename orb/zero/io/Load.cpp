#include <orb/zero/io/ModelFile.h>

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>

#include <cstdint>
#include <cstring>

#include <orb/zero/Exception.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/io/impl/Loader.h>

namespace orb::zero::io {
namespace {

bool isAscii(std::string_view text) {
  std::uint64_t seen = 0, word = 0;
  for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
    std::memcpy(&word, text.data(), sizeof word);
    seen |= word;
  }
  for (const char c : text) seen |= static_cast<unsigned char>(c);
  return (seen & 0x8080'8080'8080'8080) == 0;
}

bool isUtf8(std::string_view text) {
  rapidjson::MemoryStream in(text.data(), text.size());
  rapidjson::GenericStringBuffer<rapidjson::UTF8<>> out;
  while (in.Tell() < text.size())
    if (!rapidjson::UTF8<>::Validate(in, out)) return false;
  return true;
}

/// A text of the file. Most are short and plain, which is seen faster here than by the reader.
std::string_view checked(std::string_view text) {
  if (!isAscii(text) && !isUtf8(text))
    throw Refusal{rapidjson::GetParseError_En(rapidjson::kParseErrorStringInvalidEncoding)};
  return text;
}

/// Hands on what the reader meets.
class Tokens : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Tokens> {
 public:
  explicit Tokens(Loader& loader) : loader_(loader) {}

  bool StartObject() { return loader_.beginObject(), true; }
  bool EndObject(rapidjson::SizeType) { return loader_.endObject(), true; }
  bool StartArray() { return loader_.beginArray(), true; }
  bool EndArray(rapidjson::SizeType) { return loader_.endArray(), true; }
  bool Key(const char* text, rapidjson::SizeType size, bool) {
    return loader_.key(checked({text, size})), true;
  }
  bool String(const char* text, rapidjson::SizeType size, bool) {
    return loader_.value(Loader::Form::Text, checked({text, size})), true;
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
  constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
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
    loader.raiseAt(name, exception.getText());
  }
  transaction.commit();
}

}  // namespace orb::zero::io
