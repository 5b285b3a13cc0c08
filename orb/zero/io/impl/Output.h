#pragma once

#include <cstring>
#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

namespace orb::zero::io {

/// A stream that is written in blocks.
class Output {
 public:
  using Ch = char;  // for the library

  explicit Output(std::ostream& out) : out_(out) {}

  void Put(char c) {
    if (used_ == size) write();
    block_[used_++] = c;
  }
  void Flush() noexcept {}  // called after every text; see `finish`
  void append(std::string_view text) {
    if (text.size() > size - used_) write();
    if (text.size() > size) {
      out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    } else {
      std::memcpy(&block_[used_], text.data(), text.size());
      used_ += text.size();
    }
  }
  /// Hands all on. Returns false when the stream has failed.
  bool finish() {
    write();
    return static_cast<bool>(out_.flush());
  }

 private:
  static constexpr std::size_t size = 1 << 16;

  void write() { out_.write(block_.get(), static_cast<std::streamsize>(std::exchange(used_, 0))); }

  std::ostream& out_;
  const std::unique_ptr<char[]> block_{new char[size]};
  std::size_t used_ = 0;
};

}  // namespace orb::zero::io
