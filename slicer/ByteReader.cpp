#include "ByteReader.h"

#include <bit>
#include <utility>

#include "DiagramError.h"

namespace torvan::slicer {
namespace {

std::size_t primitiveWidth(char type) {
  switch (type) {
    case 'B':
    case 'Z':
      return 1;
    case 'C':
    case 'S':
      return 2;
    case 'F':
    case 'I':
      return 4;
    case 'D':
    case 'J':
      return 8;
    default:
      return 0;
  }
}

}  // namespace

ByteReader::ByteReader(std::string_view bytes, std::string source)
    : bytes_(bytes), source_(std::move(source)) {}

std::string_view ByteReader::bytes(std::size_t count, const char* what) {
  if (count > bytes_.size() - offset_) failExpecting(what);
  const std::string_view result = bytes_.substr(offset_, count);
  offset_ += count;
  return result;
}

std::uint64_t ByteReader::number(std::size_t width, const char* what) {
  std::uint64_t value = 0;
  for (const char byte : bytes(width, what)) value = value << 8 | static_cast<std::uint8_t>(byte);
  return value;
}

std::size_t ByteReader::count(const char* what) {
  const std::size_t value = number(4, what);
  if (value > bytes_.size() - offset_) failExpecting(std::string(what) + " within the data");
  return value;
}

std::string ByteReader::text(const char* what) { return std::string(bytes(number(2, what), what)); }

double ByteReader::primitive(char type) {
  const std::size_t width = primitiveWidth(type);
  if (width == 0) failExpecting("a known primitive type");
  const std::uint64_t bits = number(width, "a number");
  if (type == 'D') return std::bit_cast<double>(bits);
  if (type == 'F') return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
  const std::size_t unused = 64 - 8 * width;
  return static_cast<double>(static_cast<std::int64_t>(bits << unused) >> unused);
}

int ByteReader::peek() const {
  return offset_ < bytes_.size() ? static_cast<std::uint8_t>(bytes_[offset_]) : -1;
}

void ByteReader::failExpecting(const std::string& what) const {
  throw DiagramError(source_, "damaged at byte " + std::to_string(offset_) + ": expected " + what);
}

}  // namespace torvan::slicer
