#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <tyve/Api.h>

namespace tyve {

/// A failure as the host is told of it: the message catalog, the identifier of the message in it,
/// its arguments, and `what()`, the text (UTF-8). The host knows its own catalog; who passes on a
/// failure of another one brings the text along.
class TYVE_API Exception : public std::exception {
 public:
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

/// The catalog of the class system:
///
/// | identifier | arguments |
/// |---|---|
/// | InvalidHandle | |
/// | WrongArgumentCount | class, member, expected number, given number |
/// | WrongArgument | class, member, argument, expected type, given value |
/// | WrongValue | expected type, given value |
/// | UnknownClass | class |
/// | UnknownMember | class, member |
/// | UnknownField | field |
/// | AbstractClass | class |
/// | ReadOnlyProperty | class, property |
/// | DuplicateMember | class, member |
/// | NotInPackage | package, class or package |
/// | IndexOutOfRange | index, number of elements |
/// | SizeMismatch | rows, columns, number of elements |
inline constexpr std::string_view classCatalog = "NUMBAT:class";

/// Throws the message of the class system's catalog.
[[noreturn]] TYVE_API void raise(std::string_view identifier,
                                 std::vector<std::string> arguments = {});

}  // namespace tyve
