#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>

namespace orb::zero::io {

/// A stream that is read in blocks, and knows the line where it is.
class Input {
 public:
  using Ch = char;  // for the library

  explicit Input(std::istream& in) : in_(in), hasFailed_(!in) { fill(); }

  char Peek() const noexcept { return *next_; }  // 0 at the end
  char Take() {
    const char c = *next_++;
    if (next_ == end_) [[unlikely]]
      fill();
    return c;
  }
  std::size_t Tell() const noexcept { return 0; }  // for errors, which have their line

  bool isAtEnd() const noexcept { return isAtEnd_; }
  /// Whether that is because the stream cannot be read.
  bool hasFailed() const noexcept { return hasFailed_; }
  /// From 1.
  std::uint64_t line() noexcept {
    line_ += static_cast<std::uint64_t>(std::count(counted_, next_, '\n'));
    counted_ = next_;
    return line_;
  }

  // Asked for by the library, for reading in place only.
  char* PutBegin() noexcept { return nullptr; }
  void Put(char) noexcept {}
  void Flush() noexcept {}
  std::size_t PutEnd(char*) noexcept { return 0; }

 private:
  static constexpr std::size_t size = 1 << 16;

  char* begin() const noexcept { return block_.get(); }
  void fill() {
    line();
    const std::streamsize count = read();
    isAtEnd_ = count <= 0;
    if (isAtEnd_) *begin() = '\0';
    next_ = counted_ = begin();
    end_ = next_ + (isAtEnd_ ? 1 : count);
  }
  std::streamsize read() {
    if (hasFailed_) return 0;
    try {
      return in_.rdbuf()->sgetn(begin(), size);
    } catch (const std::ios_base::failure&) {
      hasFailed_ = true;
      return 0;
    }
  }

  std::istream& in_;
  const std::unique_ptr<char[]> block_{new char[size]};
  const char *next_ = begin(), *end_ = begin(), *counted_ = begin();
  std::uint64_t line_ = 1;
  bool isAtEnd_ = false;
  bool hasFailed_;
};

}  // namespace orb::zero::io
