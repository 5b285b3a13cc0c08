#include "SerialStream.h"

#include <algorithm>
#include <utility>

namespace torvan::slicer {
namespace {

constexpr std::uint64_t magicAndVersion = 0xACED0005;
constexpr std::uint32_t firstHandle = 0x7E0000;

enum Tag : std::uint8_t {
  Null = 0x70,
  Reference = 0x71,
  ClassDescription = 0x72,
  Object = 0x73,
  Text = 0x74,
  Array = 0x75,
  Block = 0x77,
  End = 0x78,
  LongBlock = 0x7A,
};

constexpr std::uint8_t writesOwnData = 1;
constexpr std::uint8_t hasFields = 2;
constexpr std::uint8_t onlyOwnData = 4;
constexpr std::uint8_t ownDataInBlocks = 8;

// References let a short stream describe an endless or a huge value, so nesting and the amount of
// characters and numbers copied out are limited.
constexpr int maxDepth = 100;
constexpr std::size_t spareBudget = 1'000'000;
constexpr std::size_t budgetPerByte = 8;

class DepthGuard {
 public:
  DepthGuard(int& depth, const ByteReader& input) : depth_(depth) {
    if (depth >= maxDepth) input.failExpecting("less deep nesting");
    ++depth_;
  }
  ~DepthGuard() { --depth_; }
  DepthGuard(const DepthGuard&) = delete;
  DepthGuard& operator=(const DepthGuard&) = delete;

 private:
  int& depth_;
};

bool isReferenceType(char type) { return type == '[' || type == 'L'; }

}  // namespace

SerialStream::SerialStream(std::string_view bytes, std::string source)
    : input_(bytes, std::move(source)), budget_(spareBudget + budgetPerByte * bytes.size()) {}

std::vector<Parameter> SerialStream::parameters() {
  if (input_.number(4, "a stream header") != magicAndVersion)
    input_.failExpecting("a version 5 stream header");
  const Content* root = readContent();
  std::vector<Parameter> parameters;
  for (const Content* element : listElements(*root)) collect(*element, parameters.emplace_back());
  return parameters;
}

const SerialStream::Content* SerialStream::readContent() {
  const DepthGuard guard(depth_, input_);
  switch (const auto tag = input_.number(1, "a value")) {
    case Tag::Null: {
      static const Content null;
      return &null;
    }
    case Tag::Reference:
      if (const Content* content = readHandle().content) return content;
      input_.failExpecting("a reference to a value");
    case Tag::Text: {
      Content& text = newContent(Kind::Text);
      text.text = input_.text("a text");
      handles_.push_back({&text, nullptr});
      return &text;
    }
    case Tag::Block:
    case Tag::LongBlock: {
      const std::size_t size =
          tag == Tag::Block ? input_.number(1, "a block size") : input_.count("a block size");
      Content& block = newContent(Kind::Block);
      block.text = input_.bytes(size, "a data block");
      return &block;
    }
    case Tag::Array:
      return readArray();
    case Tag::Object:
      return readObject();
    default:
      input_.failExpecting("a value before this byte");
  }
}

const SerialStream::Content* SerialStream::readArray() {
  const ClassDescription* description = readClassDescription();
  if (!description || description->name.size() < 2) input_.failExpecting("an array class");
  const char type = description->name[1];
  Content& array = newContent(Kind::Array);
  handles_.push_back({&array, nullptr});
  const std::size_t size = input_.count("an array size");
  for (std::size_t i = 0; i < size; ++i) {
    if (isReferenceType(type)) {
      array.items.push_back(readContent());
    } else {
      array.numbers.push_back(input_.primitive(type));
    }
  }
  return &array;
}

const SerialStream::Content* SerialStream::readObject() {
  const ClassDescription* description = readClassDescription();
  if (!description) input_.failExpecting("a class description");
  Content& object = newContent(Kind::Object);
  object.text = description->name;
  handles_.push_back({&object, nullptr});
  readObjectData(*description, object);
  return &object;
}

void SerialStream::readObjectData(const ClassDescription& description, Content& object) {
  const DepthGuard guard(depth_, input_);
  if (description.flags & onlyOwnData) {
    if (!(description.flags & ownDataInBlocks)) input_.failExpecting("own data in blocks");
    readContentsToEnd(object);
    return;
  }
  if (description.super) readObjectData(*description.super, object);
  if (!(description.flags & hasFields)) return;
  for (const char type : description.fieldTypes) {
    if (isReferenceType(type)) {
      readContent();
    } else {
      input_.primitive(type);
    }
  }
  if (description.flags & writesOwnData) readContentsToEnd(object);
}

void SerialStream::readContentsToEnd(Content& object) {
  while (input_.peek() != Tag::End) object.items.push_back(readContent());
  input_.bytes(1, "an end mark");
}

const SerialStream::ClassDescription* SerialStream::readClassDescription() {
  const DepthGuard guard(depth_, input_);
  switch (input_.number(1, "a class description")) {
    case Tag::Null:
      return nullptr;
    case Tag::Reference:
      if (const ClassDescription* description = readHandle().description) return description;
      input_.failExpecting("a reference to a class description");
    case Tag::ClassDescription:
      return readNewClassDescription();
    default:
      input_.failExpecting("a class description before this byte");
  }
}

const SerialStream::ClassDescription* SerialStream::readNewClassDescription() {
  ClassDescription& description = descriptions_.emplace_back();
  description.name = input_.text("a class name");
  input_.number(8, "a class version");
  handles_.push_back({nullptr, &description});
  description.flags = static_cast<std::uint8_t>(input_.number(1, "class flags"));
  const std::size_t fields = input_.number(2, "a field count");
  for (std::size_t i = 0; i < fields; ++i) {
    const char type = static_cast<char>(input_.number(1, "a field type"));
    input_.text("a field name");
    if (isReferenceType(type)) readContent();
    description.fieldTypes += type;
  }
  Content annotations;
  readContentsToEnd(annotations);
  description.super = readClassDescription();
  return &description;
}

SerialStream::Content& SerialStream::newContent(Kind kind) {
  Content& content = contents_.emplace_back();
  content.kind = kind;
  return content;
}

SerialStream::Handle SerialStream::readHandle() {
  const std::uint64_t handle = input_.number(4, "a reference") - firstHandle;
  if (handle >= handles_.size()) input_.failExpecting("a reference to something read before");
  return handles_[handle];
}

std::vector<const SerialStream::Content*> SerialStream::listElements(const Content& list) const {
  // The first block holds a format version and the number of elements, four bytes each.
  if (list.kind != Kind::Object || list.items.empty() || list.items[0]->kind != Kind::Block ||
      list.items[0]->text.size() < 8)
    input_.failExpecting("a list of values");
  std::size_t size = 0;
  for (const char byte : list.items[0]->text.substr(4, 4))
    size = size << 8 | static_cast<std::uint8_t>(byte);
  if (size > list.items.size() - 1) input_.failExpecting("all elements of a list");
  const auto first = list.items.begin() + 1;
  return {first, first + static_cast<std::ptrdiff_t>(size)};
}

void SerialStream::collect(const Content& value, Parameter& into) {
  const DepthGuard guard(depth_, input_);
  charge(1);
  const auto isArray = [](const Content* item) { return item->kind == Kind::Array; };
  if (value.kind == Kind::Object && value.text.ends_with("List")) {
    for (const Content* element : listElements(value)) collect(*element, into);
  } else if (value.kind == Kind::Object) {
    const auto rows = std::find_if(value.items.begin(), value.items.end(), isArray);
    if (rows == value.items.end()) return;
    for (const Content* row : (*rows)->items) {
      charge(1 + row->numbers.size());
      into.numbers.insert(into.numbers.end(), row->numbers.begin(), row->numbers.end());
      for (const Content* text : row->items) {
        charge(1 + text->text.size());
        into.texts.push_back(text->text);
      }
    }
  }
}

void SerialStream::charge(std::size_t cost) {
  if (cost > budget_) input_.failExpecting("fewer values");
  budget_ -= cost;
}

}  // namespace torvan::slicer
