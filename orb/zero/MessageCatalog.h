#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <orb/zero/Api.h>

namespace orb::zero {

/// The texts behind the messages of exceptions, per catalog and identifier.
class ORB_ZERO_API MessageCatalog {
 public:
  /// The text of a message with "{0}", "{1}", … replaced by its arguments (a missing argument
  /// leaves its place empty); "Message text unavailable" without an entry.
  static std::string text(std::string_view catalog, std::string_view identifier,
                          const std::vector<std::string>& arguments);
};

}  // namespace orb::zero
