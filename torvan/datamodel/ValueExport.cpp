#include <torvan/datamodel/ValueArchive.h>

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <rapidjson/writer.h>

#include <orb/zero/io/impl/Output.h>
#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/PowerSetType.h>
#include <torvan/datamodel/StructType.h>
#include <torvan/datamodel/impl/ValueParts.h>

namespace torvan::datamodel {
namespace {

/// The text on its way to the stream, with a new line before those entries that ask for one.
class Lines {
 public:
  using Ch = char;

  explicit Lines(std::ostream& out) : out_(out) {}

  /// The next entry, which the writer begins with a comma unless it is the first of its list,
  /// stands on a line of its own.
  void breakBeforeEntry(bool isFirst, std::size_t indent = 0) {
    indent_ = indent;
    isFirst ? breakLine() : void(breaksAfterComma_ = true);
  }
  void breakLine() {
    constexpr std::string_view blanks = "                ";  // more would make it quadratic
    out_.Put('\n');
    out_.append(blanks.substr(0, std::exchange(indent_, 0)));
  }
  void Put(char character) {
    out_.Put(character);
    if (character == ',' && std::exchange(breaksAfterComma_, false)) breakLine();
  }
  void Flush() {}
  /// Returns false when the stream has failed.
  bool finish() { return out_.finish(); }

 private:
  orb::zero::io::Output out_;
  std::size_t indent_ = 0;
  bool breaksAfterComma_ = false;
};

class ValueWriter {
 public:
  explicit ValueWriter(std::ostream& out) : lines_(out), json_(lines_) {}

  void write(std::span<const NamedValue> values) {
    std::unordered_set<std::string_view> names;
    for (const NamedValue& named : values) {
      name_ = named.name;
      if (!names.insert(named.name).second) fail("There are two values of this name.");
      if (named.value) collect(*named.value.get());
    }
    json_.StartObject();
    property("format", "torvan.values");
    key("version");
    json_.Uint(1);
    key("types");
    json_.StartObject();
    for (std::size_t i = 0; i < types_.size(); ++i) {
      lines_.breakBeforeEntry(i == 0);
      writeType(types_[i]);
    }
    closeLines();
    key("values");
    json_.StartObject();
    for (std::size_t i = 0; i < values.size(); ++i) {
      name_ = values[i].name;
      lines_.breakBeforeEntry(i == 0);
      writeValue(values[i]);
    }
    closeLines();
    json_.EndObject();
    name_.clear();
    lines_.breakLine();
    if (!lines_.finish()) fail("The stream does not take it.");
  }

 private:
  /// What is known of an element that is to be written.
  struct Known {
    std::uint32_t places = 0;
    std::uint32_t id = 0;  // once a value of several places is written
    bool isOpen = false;   // what it is made of is being looked at
  };
  struct Composite {
    std::vector<ValuePart> parts;
    std::size_t next = 0;
  };

  [[noreturn]] void fail(const char* problem) const {
    orb::zero::raise("CannotExportValues", {name_, problem});
  }

  // ---------------------------------------------------------------- what there is to write
  /// Counts the places of the values, and lists the types, each after those that it is made of.
  void collect(ModelElement::Impl& root) {
    struct Visit {
      ModelElement::Impl* element;
      bool isDone;
    };
    std::vector<Visit> pending{{&root, false}};
    while (!pending.empty()) {
      Visit& visit = pending.back();
      ModelElement::Impl& element = *visit.element;
      Known& known = known_[&element];
      if (visit.isDone) {
        pending.pop_back();
        known.isOpen = false;
        if (element.getMetaClass().isKindOf(LatticeType::metaClass()))
          declare(LatticeType{ModelElement(&element)});
        continue;
      }
      if (known.isOpen) fail("It contains itself.");
      if (++known.places > 1) {
        pending.pop_back();
        continue;
      }
      if (element.isProxy()) fail("It is no value, or has a part or a type that is none.");
      known.isOpen = visit.isDone = true;
      const auto first = static_cast<std::ptrdiff_t>(pending.size());
      forTargets(element, [&](const ModelElement& target) {
        if (target) pending.push_back({target.get(), false});
      });
      std::reverse(pending.begin() + first, pending.end());
    }
  }

  template <class Visit>
  void forTargets(ModelElement::Impl& element, Visit visit) const {
    const meta::ClassInfo& kind = element.getMetaClass();
    const ModelElement handle(&element);
    if (kind.isKindOf(LatticeValue::metaClass())) {
      const LatticeValue value{handle};
      if (!fits(value->getType(), formOf(kind))) fail("It is of another kind than its type.");
      if (kind.isKindOf(Array::metaClass()) && Array(value)->getValues().contains(0))
        fail("It has an array with an index 0.");
      visit(value->getType());
      for (const ValuePart& part : partsOf(value)) visit(part.value);
    } else if (kind.isKindOf(ArrayType::metaClass())) {
      visit(ArrayType(handle)->getElemType());
    } else if (kind.isKindOf(StructType::metaClass())) {
      for (const auto& [name, field] : StructType(handle)->getFields()) visit(field->getElemType());
    }
  }

  /// Gives the type a label of its own.
  void declare(const LatticeType& type) {
    const std::string& name = type->getName();
    std::string label = name;
    while (label.empty() || !labelled_.insert(label).second)
      label = name + '#' + std::to_string(++numbers_[name]);
    types_.push_back(type);
    labels_.emplace(type.get(), std::move(label));
  }

  // ---------------------------------------------------------------- its text
  void text(std::string_view text) {
    if (!json_.String(text.data(), static_cast<rapidjson::SizeType>(text.size())))
      fail("It has a name that is no UTF-8.");
  }
  void key(std::string_view name) { text(name); }
  void property(std::string_view name, std::string_view value) {
    key(name);
    text(value);
  }
  /// Ends a list whose entries stand on lines of their own.
  void closeLines() {
    lines_.breakLine();
    json_.EndObject();
  }

  void writeLabel(const LatticeType& type) {
    type ? text(labels_.at(type.get())) : void(json_.Null());
  }

  void writeType(const LatticeType& type) {
    const ValueForm& form = formOf(type->getMetaClass());
    name_ = labels_.at(type.get());
    key(name_);
    json_.StartObject();
    property("name", type->getName());
    if (type->getMetaClass().isKindOf(StructType::metaClass())) {
      key(form.typeContent);
      json_.StartObject();
      for (const auto& [name, field] : StructType(type)->getFields()) {
        key(name);
        writeLabel(field->getElemType());
      }
      json_.EndObject();
    } else {
      key("size");
      json_.Uint(type->getNumElems());
      key(form.typeContent);
      if (type->getMetaClass().isKindOf(ArrayType::metaClass())) {
        writeLabel(ArrayType(type)->getElemType());
      } else {
        json_.StartArray();
        for (const std::string& name : PowerSetType(type)->getUniverse()) text(name);
        json_.EndArray();
      }
    }
    json_.EndObject();
  }

  void writeValue(const NamedValue& named) {
    key(named.name);
    std::vector<Composite> open;
    begin(named.value, open);
    while (!open.empty()) {
      Composite& composite = open.back();
      if (composite.next == composite.parts.size()) {
        json_.EndObject();
        json_.EndObject();
        open.pop_back();
        continue;
      }
      lines_.breakBeforeEntry(composite.next == 0, open.size());
      const ValuePart part = std::move(composite.parts[composite.next++]);
      key(part.key);
      begin(part.value, open);
    }
  }

  /// Writes a value, or the beginning of one whose parts are still to be written.
  void begin(const LatticeValue& value, std::vector<Composite>& open) {
    if (!value) return void(json_.Null());
    Known& known = known_.at(value.get());
    if (known.id != 0) return void(json_.Uint(known.id));
    const ValueForm& form = formOf(value->getMetaClass());
    json_.StartObject();
    if (known.places > 1) {
      key("id");
      json_.Uint(known.id = ++lastId_);
    }
    if (const LatticeType& type = value->getType()) property("type", labels_.at(type.get()));
    if (value->getMetaClass().isKindOf(PowerSet::metaClass())) {
      const Bits& bits = PowerSet(value)->bits();
      key("size");
      json_.Uint64(bits.size());
      property(form.content, toHexadecimal(bits.copy()));
      json_.EndObject();
      return;
    }
    key(form.content);
    json_.StartObject();
    open.push_back({partsOf(value)});
  }

  Lines lines_;
  orb::zero::io::JsonWriter<Lines> json_;
  std::string name_;  // of the value at hand
  std::unordered_map<const ModelElement::Impl*, Known> known_;
  std::vector<LatticeType> types_;
  std::unordered_map<const ModelElement::Impl*, std::string> labels_;
  std::unordered_set<std::string> labelled_;
  std::unordered_map<std::string, std::uint32_t> numbers_;
  std::uint32_t lastId_ = 0;
};

}  // namespace

void exportValues(std::span<const NamedValue> values, std::ostream& out) {
  ValueWriter(out).write(values);
}

}  // namespace torvan::datamodel
