#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace torvan::slicer {

// Builds serialization streams byte by byte, with a new class description for every object.

inline std::string number(std::uint64_t value, int width) {
  std::string bytes;
  for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) {
    bytes += static_cast<char>(value >> shift & 0xFF);
  }
  return bytes;
}

inline std::string name(const std::string& text) { return number(text.size(), 2) + text; }

inline std::string text(const std::string& content) { return "\x74" + name(content); }

inline std::string reference(std::uint32_t handle) { return "\x71" + number(0x7E0000 + handle, 4); }

inline std::string classDescription(const std::string& className, int flags = 0x0C,
                                    const std::string& super = "\x70") {
  return "\x72" + name(className) + number(0, 8) + number(static_cast<std::uint64_t>(flags), 1) +
         number(0, 2) + "\x78" + super;
}

inline std::string array(const std::string& className, std::uint32_t size,
                         const std::string& elements) {
  return "\x75" + classDescription(className) + number(size, 4) + elements;
}

// A matrix of one column of texts.
inline std::string textColumn(const std::vector<std::string>& texts) {
  std::string rows;
  for (const std::string& each : texts) rows += array("[LText;", 1, text(each));
  return "\x73" + classDescription("TextMatrix") + "\x77\x04" + number(1, 4) +
         array("[[LText;", static_cast<std::uint32_t>(texts.size()), rows) + "\x70\x77\x01" +
         number(0, 1) + "\x78";
}

// A matrix of one row of numbers given as bytes of the type `code`.
inline std::string numberRow(char code, std::uint32_t columns, const std::string& bytes) {
  const std::string type(1, code);
  return "\x73" + classDescription("NumberMatrix") + "\x77\x04" + number(1, 4) +
         array("[[" + type, 1, array("[" + type, columns, bytes)) + "\x70\x78";
}

inline std::string list(std::uint32_t size, const std::string& elements) {
  return "\x73" + classDescription("ValueList") + "\x77\x08" + number(1, 4) + number(size, 4) +
         elements + text("") + "\x78";
}

inline std::string stream(const std::string& content) { return number(0xACED0005, 4) + content; }

}  // namespace torvan::slicer
