#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace torvan::slicer {

/// Takes big-endian numbers and texts off a byte sequence. Every member that reads throws
/// DiagramError with the offset and `what` was expected when the bytes run out.
class ByteReader {
 public:
  /// `bytes` must outlive the reader; `source` names them in error messages.
  ByteReader(std::string_view bytes, std::string source);

  std::string_view bytes(std::size_t count, const char* what);

  /// An unsigned number of `width` bytes, 1 to 8.
  std::uint64_t number(std::size_t width, const char* what);

  /// A four byte count of things that take at least one byte each: never more than bytes are left.
  std::size_t count(const char* what);

  /// A text behind its two byte length.
  std::string text(const char* what);

  /// A primitive value by its type code, one of B C D F I J S Z.
  double primitive(char type);

  /// The next byte, which stays unread; -1 at the end.
  int peek() const;

  [[noreturn]] void failExpecting(const std::string& what) const;

 private:
  std::string_view bytes_;
  std::string source_;
  std::size_t offset_ = 0;
};

}  // namespace torvan::slicer
