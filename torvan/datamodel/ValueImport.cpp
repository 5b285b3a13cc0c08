#include <torvan/datamodel/ValueArchive.h>

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <orb/zero/Transaction.h>
#include <orb/zero/io/impl/Input.h>
#include <torvan/datamodel/TypeFactory.h>
#include <torvan/datamodel/ValueFactory.h>
#include <torvan/datamodel/impl/ValueDraft.h>

namespace torvan::datamodel {
namespace {

/// Makes types and values while the text is parsed, each at its end.
class ValueReader : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, ValueReader> {
 public:
  ValueReader(std::istream& in, orb::zero::Model model)
      : text_(in), model_(std::move(model)), factory_(model_), types_(model_) {
    types_.valueFactory(&factory_);
  }

  std::vector<NamedValue> read() {
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag |
                               rapidjson::kParseValidateEncodingFlag |
                               rapidjson::kParseNumbersAsStringsFlag;
    try {
      const auto result = reader.Parse<flags>(text_, *this);
      if (text_.hasFailed()) throw TextProblem{"The stream cannot be read."};
      if (!result) throw TextProblem{GetParseError_En(result.Code())};
      if (!text_.isAtEnd()) throw TextProblem{"The text goes on after its end."};
    } catch (const TextProblem& problem) {
      orb::zero::raise("CannotImportValues", {place(), problem.sentence});
    }
    return std::move(values_);
  }

  // What the parser meets.
  bool Default() { throw TextProblem{"This has no meaning here."}; }
  bool Null();
  bool RawNumber(const char* text, rapidjson::SizeType length, bool) {
    return number({text, length});
  }
  bool String(const char* text, rapidjson::SizeType length, bool) { return string({text, length}); }
  bool Key(const char* text, rapidjson::SizeType length, bool) { return key({text, length}); }
  bool StartObject();
  bool EndObject(rapidjson::SizeType);
  bool StartArray();
  bool EndArray(rapidjson::SizeType) { return places_.pop_back(), true; }

 private:
  enum class In { File, Types, Type, FieldTypes, Universe, Values, Value, Parts };
  /// An object or a list that has begun.
  struct Place {
    In kind;
    std::string key{};                       // of the entry at hand
    std::unordered_set<std::string> keys{};  // of all so far
  };
  std::string place() {
    std::string place = "line " + std::to_string(text_.line());
    const char* separator = ", /";
    for (const Place& outer : places_) place += std::exchange(separator, "/") + outer.key;
    return place;
  }
  bool isAt(In kind, std::string_view key) const {
    return places_.back().kind == kind && places_.back().key == key;
  }
  bool isTypePlace() const {
    return isAt(In::Type, "element") || places_.back().kind == In::FieldTypes;
  }
  bool isValuePlace() const {
    return places_.back().kind == In::Values || places_.back().kind == In::Parts;
  }
  bool number(std::string_view text);
  bool string(std::string_view text);
  bool key(std::string_view text);
  bool begin(In kind) { return places_.push_back({kind}), true; }
  LatticeType typeOf(std::string_view label) const;
  /// The type, or none, of the elements or of a field.
  bool add(const LatticeType& type);
  void finishValue();
  /// Puts a value, or none, where it stands.
  bool give(const LatticeValue& value);

  orb::zero::io::Input text_;
  orb::zero::Model model_;
  ValueFactory factory_;
  TypeFactory types_;
  std::vector<Place> places_;
  TypeDraft type_;
  std::vector<ValueDraft> drafts_;
  std::unordered_map<std::string, LatticeType> labels_;
  std::unordered_map<std::uint64_t, LatticeValue> ids_;
  std::vector<NamedValue> values_;
};

bool ValueReader::StartObject() {
  if (places_.empty()) return begin(In::File);
  if (isAt(In::File, "types")) return begin(In::Types);
  if (isAt(In::File, "values")) return begin(In::Values);
  switch (places_.back().kind) {
    case In::Types:
      type_ = {};
      return begin(In::Type);
    case In::Type:
      if (!isAt(In::Type, "fields")) break;
      type_.content.set(places_.back().key);
      return begin(In::FieldTypes);
    case In::Values:
    case In::Parts:
      drafts_.emplace_back();
      return begin(In::Value);
    case In::Value:
      if (!isAt(In::Value, "fields") && !isAt(In::Value, "elements")) break;
      drafts_.back().begin(model_, places_.back().key);
      return begin(In::Parts);
    default:
      break;
  }
  return Default();
}

bool ValueReader::StartArray() {
  if (places_.empty() || !isAt(In::Type, "universe")) return Default();
  type_.content.set(places_.back().key);
  return begin(In::Universe);
}

bool ValueReader::EndObject(rapidjson::SizeType) {
  const Place ended = std::move(places_.back());
  places_.pop_back();
  if (ended.kind == In::Type) labels_[places_.back().key] = type_.make(types_);
  if (ended.kind == In::Value) finishValue();
  if (ended.kind == In::File && ended.keys.size() != 4)
    throw TextProblem{"The file is not complete."};
  return true;
}

bool ValueReader::key(std::string_view text) {
  Place& place = places_.back();
  place.key = text;
  if (place.kind == In::File && place.keys.empty() && text != "format")
    throw TextProblem{"The file does not begin with its format."};
  if (!place.keys.insert(place.key).second)
    throw TextProblem{"There are two entries of this name."};
  return true;
}

bool ValueReader::Null() {
  if (places_.empty()) return Default();
  if (isTypePlace()) return add(LatticeType());
  return isValuePlace() ? give({}) : Default();
}

bool ValueReader::number(std::string_view text) {
  if (places_.empty()) return Default();
  if (isAt(In::File, "version")) {
    if (text != "1") throw TextProblem{"Only version 1 can be read."};
  } else if (isAt(In::Type, "size")) {
    type_.size = parseNumber<std::uint16_t>(text);
  } else if (isAt(In::Value, "size")) {
    drafts_.back().size = parseNumber<std::uint64_t>(text);
  } else if (isAt(In::Value, "id")) {
    drafts_.back().id = parseNumber<std::uint64_t>(text);
  } else if (isValuePlace()) {
    const auto found = ids_.find(parseNumber<std::uint64_t>(text));
    if (found == ids_.end()) throw TextProblem{"There is no value of this id before."};
    return give(found->second);
  } else {
    return Default();
  }
  return true;
}

bool ValueReader::string(std::string_view text) {
  if (places_.empty()) return Default();
  if (isAt(In::File, "format")) {
    if (text != "torvan.values") throw TextProblem{"The file is of another format."};
  } else if (isAt(In::Type, "name")) {
    type_.name = text;
  } else if (isTypePlace()) {
    return add(typeOf(text));
  } else if (places_.back().kind == In::Universe) {
    type_.names.emplace_back(text);
  } else if (isAt(In::Value, "type")) {
    drafts_.back().type = typeOf(text);
  } else if (isAt(In::Value, "bits")) {
    drafts_.back().content.set(places_.back().key);
    drafts_.back().digits = text;
  } else {
    return Default();
  }
  return true;
}

LatticeType ValueReader::typeOf(std::string_view label) const {
  const auto found = labels_.find(std::string(label));
  if (found == labels_.end()) throw TextProblem{"There is no type of this label before."};
  return found->second;
}

bool ValueReader::add(const LatticeType& type) {
  const Place& place = places_.back();
  place.kind == In::Type ? type_.content.set(place.key) : type_.names.push_back(place.key);
  type_.types.push_back(type);
  return true;
}

void ValueReader::finishValue() {
  const ValueDraft draft = std::move(drafts_.back());
  drafts_.pop_back();
  const LatticeValue value = draft.make(model_);
  if (draft.id && !ids_.emplace(*draft.id, value).second)
    throw TextProblem{"There are two values of this id."};
  give(value);
}

bool ValueReader::give(const LatticeValue& value) {
  const std::string& key = places_.back().key;
  if (places_.back().kind == In::Values) {
    values_.push_back({key, value});
    return true;
  }
  drafts_.back().store(key, value);
  return true;
}

}  // namespace

std::vector<NamedValue> importValues(std::istream& in, const orb::zero::Model& model) {
  orb::zero::Transaction transaction(model);
  std::vector<NamedValue> values = ValueReader(in, model).read();
  transaction.commit();
  return values;
}

}  // namespace torvan::datamodel
