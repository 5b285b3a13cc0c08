#include "Escape.h"

#include <boost/locale/utf.hpp>

namespace torvan::slicer {
namespace {

using Utf8 = boost::locale::utf::utf_traits<char>;

bool isControl(boost::locale::utf::code_point character) {
  return character < ' ' || character == 0x7F;
}
/// Also those that are no characters to XML.
bool isCharacter(boost::locale::utf::code_point character) {
  return boost::locale::utf::is_valid_codepoint(character) && character != 0xFFFE &&
         character != 0xFFFF;
}

/// The text, of which `append` writes each character that needs nothing but an escape.
template <class Append>
std::string escape(std::string_view text, Append append) {
  std::string result;
  for (const char* at = text.begin(); at != text.end();) {
    const char* const start = at;
    const auto character = Utf8::decode(at, text.end());
    if (!isCharacter(character)) {
      result += "\uFFFD";
      at = start + 1;
    } else if (isControl(character)) {
      result += ' ';
    } else {
      append(result, std::string_view(start, static_cast<std::size_t>(at - start)));
    }
  }
  return result;
}

}  // namespace

std::string cleanText(std::string_view text) {
  return escape(text, [](std::string& result, std::string_view character) { result += character; });
}

std::string escapeXml(std::string_view text) {
  return escape(text, [](std::string& result, std::string_view character) {
    switch (character.front()) {
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
        result += character;
    }
  });
}

std::string escapeDot(std::string_view text) {
  return escape(text, [](std::string& result, std::string_view character) {
    if (character == "\"" || character == "\\") result += '\\';
    result += character;
  });
}

}  // namespace torvan::slicer
