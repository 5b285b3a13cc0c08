#pragma once

#include <string>
#include <string_view>

namespace torvan::slicer {

/// The text of an HTML fragment on one line: without tags, entities resolved, blanks collapsed.
std::string plainText(std::string_view html);

}  // namespace torvan::slicer
