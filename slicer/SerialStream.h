#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "ByteReader.h"
#include "Parameter.h"

namespace torvan::slicer {

/// Reader of an object serialization stream that holds one list of parameter values.
///
/// Nothing in the stream is trusted: sizes are checked against the bytes left, nesting and the
/// amount of values reached through shared references are bounded.
class SerialStream {
 public:
  /// `bytes` must outlive the stream; `source` names it in error messages.
  SerialStream(std::string_view bytes, std::string source);

  /// The elements of the list, in order. Call once.
  /// Throws DiagramError with the byte offset and what was expected there.
  std::vector<Parameter> parameters();

 private:
  struct ClassDescription {
    std::string name;
    std::uint8_t flags = 0;
    std::string fieldTypes;  // one type code per field
    const ClassDescription* super = nullptr;
  };

  enum class Kind { Null, Text, Block, Array, Object };

  struct Content {
    Kind kind = Kind::Null;
    std::string text;                   // Text: characters; Block: raw bytes; Object: class name
    std::vector<double> numbers;        // Array of primitives
    std::vector<const Content*> items;  // Array of references, Object
  };

  /// What a back reference can mean: exactly one of the two is set.
  struct Handle {
    const Content* content;
    const ClassDescription* description;
  };

  const Content* readContent();
  const Content* readArray();
  const Content* readObject();
  void readObjectData(const ClassDescription& description, Content& object);
  void readContentsToEnd(Content& object);
  const ClassDescription* readClassDescription();
  const ClassDescription* readNewClassDescription();
  Content& newContent(Kind kind);
  Handle readHandle();

  std::vector<const Content*> listElements(const Content& list) const;
  void collect(const Content& value, Parameter& into);
  void charge(std::size_t cost);

  ByteReader input_;
  std::size_t budget_;
  int depth_ = 0;
  std::deque<Content> contents_;
  std::deque<ClassDescription> descriptions_;
  std::vector<Handle> handles_;
};

}  // namespace torvan::slicer
