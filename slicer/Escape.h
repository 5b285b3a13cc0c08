#pragma once

#include <string>
#include <string_view>

namespace torvan::slicer {

// In all, control characters become blanks, and what is no UTF-8 or no character U+FFFD.

std::string cleanText(std::string_view text);

/// Text as it may stand in XML content or attribute values.
std::string escapeXml(std::string_view text);

/// Text as it may stand between the quotes of a Graphviz string.
std::string escapeDot(std::string_view text);

}  // namespace torvan::slicer
