#include "Escape.h"

namespace torvan::slicer {
namespace {

bool isControl(char character) {
  return static_cast<unsigned char>(character) < ' ' || character == '\x7f';
}

}  // namespace

std::string escapeXml(std::string_view text) {
  std::string result;
  for (const char character : text) {
    switch (character) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += isControl(character) ? ' ' : character;
    }
  }
  return result;
}

std::string escapeDot(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '"' || character == '\\') result += '\\';
    result += isControl(character) ? ' ' : character;
  }
  return result;
}

}  // namespace torvan::slicer
