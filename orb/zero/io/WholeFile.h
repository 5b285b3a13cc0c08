#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include <orb/zero/Api.h>

namespace orb::zero::io {

/// Writes a file that appears whole, in the place of one of its name, or not at all. Links that
/// lead to it stay, and so do the permissions that it had. Raises "CannotSave" when it cannot be
/// written; what `write` raises passes through.
ORB_ZERO_API void writeWhole(const std::string& file,
                             const std::function<void(std::ostream&)>& write);

}  // namespace orb::zero::io
