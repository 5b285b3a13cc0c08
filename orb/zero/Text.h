#pragma once

#include <string>
#include <string_view>

#include <orb/zero/Api.h>

namespace orb::zero {

/// Between UTF-8, the encoding of values and messages, and UTF-16, that of the names in the
/// registry. What is malformed is left out.
ORB_ZERO_API std::u16string toUtf16(std::string_view text);
ORB_ZERO_API std::string toUtf8(std::u16string_view text);

}  // namespace orb::zero
