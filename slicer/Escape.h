#pragma once

#include <string>
#include <string_view>

namespace torvan::slicer {

/// Text as it may stand in XML content or attribute values; control characters become blanks.
std::string escapeXml(std::string_view text);

/// Text as it may stand between the quotes of a Graphviz string.
std::string escapeDot(std::string_view text);

}  // namespace torvan::slicer
