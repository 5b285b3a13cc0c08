#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <orb/zero/Api.h>

namespace orb::zero {

/// A failure as data: the message catalog, the identifier of the message in it, and the message's
/// arguments. `what()` is the catalog's text with the arguments put in (UTF-8), or
/// "Message text unavailable" where the catalog has none.
class ORB_ZERO_API Exception : public std::exception {
 public:
  Exception(std::string catalog, std::string identifier, std::vector<std::string> arguments = {});
  /// With a text that tells more than the arguments do.
  Exception(std::string catalog, std::string identifier, std::vector<std::string> arguments,
            std::string text);
  ~Exception() override;

  const std::string& getCatalog() const noexcept { return catalog_; }
  const std::string& getIdentifier() const noexcept { return identifier_; }
  const std::vector<std::string>& getArguments() const noexcept { return arguments_; }
  /// What `what()` shows up to the first NUL, whole.
  const std::string& getText() const noexcept { return text_; }
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string catalog_;
  std::string identifier_;
  std::vector<std::string> arguments_;
  std::string text_;
};

/// The catalog of the element framework.
inline constexpr std::string_view frameworkCatalog = "orb0:messages";

/// Throws the message of the framework's own catalog.
[[noreturn]] ORB_ZERO_API void raise(std::string_view identifier,
                                     std::vector<std::string> arguments = {});

}  // namespace orb::zero
