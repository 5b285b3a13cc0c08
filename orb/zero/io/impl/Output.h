#pragma once

#include <cstring>
#include <exception>
#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

#include <rapidjson/writer.h>

namespace orb::zero::io {

/// Writes JSON to a stream or what looks like one; refuses texts that are no UTF-8.
template <class Out>
using JsonWriter =
    rapidjson::Writer<Out, rapidjson::UTF8<>, rapidjson::UTF8<>, rapidjson::CrtAllocator,
                      rapidjson::kWriteValidateEncodingFlag>;

/// A stream that is written in blocks. What it throws is told by `finish` alone.
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
      write(text);
    } else {
      std::memcpy(&block_[used_], text.data(), text.size());
      used_ += text.size();
    }
  }
  /// Hands all on. Returns false when the stream has failed.
  bool finish() {
    write();
    attempt([this] { out_.flush(); });
    return static_cast<bool>(out_);
  }

 private:
  static constexpr std::size_t size = 1 << 16;

  void write() { write({block_.get(), std::exchange(used_, 0)}); }
  void write(std::string_view text) {
    attempt([&] { out_.write(text.data(), static_cast<std::streamsize>(text.size())); });
  }
  /// The state of the stream remembers what it throws.
  template <class Use>
  static void attempt(Use use) {
    try {
      use();
    } catch (const std::exception&) {
    }
  }

  std::ostream& out_;
  const std::unique_ptr<char[]> block_{new char[size]};
  std::size_t used_ = 0;
};

}  // namespace orb::zero::io
