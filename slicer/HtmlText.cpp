#include "HtmlText.h"

#include <array>
#include <cctype>
#include <utility>

namespace torvan::slicer {
namespace {

using Entity = std::pair<std::string_view, char>;
constexpr std::array entities{Entity{"&lt;", '<'},   Entity{"&gt;", '>'},    Entity{"&amp;", '&'},
                              Entity{"&quot;", '"'}, Entity{"&apos;", '\''}, Entity{"&nbsp;", ' '}};

/// A '<' opens a tag only before a name, a slash or a comment: "a < b" is text.
bool opensTag(std::string_view text) {
  if (text.size() < 2 || text[0] != '<') return false;
  const char next = text[1];
  return std::isalpha(static_cast<unsigned char>(next)) || next == '/' || next == '!';
}

/// Takes one character off the front of `text`; a tag counts as a blank.
char takeCharacter(std::string_view& text) {
  if (opensTag(text)) {
    const std::size_t end = text.find('>');
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return ' ';
  }
  for (const auto& [entity, character] : entities) {
    if (text.starts_with(entity)) {
      text.remove_prefix(entity.size());
      return character;
    }
  }
  const char character = text.front();
  text.remove_prefix(1);
  return character;
}

}  // namespace

std::string plainText(std::string_view html) {
  std::string result;
  while (!html.empty()) {
    const char character = takeCharacter(html);
    if (!std::isspace(static_cast<unsigned char>(character))) {
      result += character;
    } else if (!result.empty() && result.back() != ' ') {
      result += ' ';
    }
  }
  if (result.ends_with(' ')) result.pop_back();
  return result;
}

}  // namespace torvan::slicer
