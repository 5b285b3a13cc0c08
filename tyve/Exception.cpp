#include <tyve/Exception.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tyve {
namespace {

struct Message {
  std::string_view identifier, text;  // "%1" is the first argument
};

constexpr Message messages[] = {
    {"InvalidHandle", "The handle is invalid or its object was deleted."},
    {"WrongArgumentCount", "'%2' of class '%1' takes %3 arguments, not %4."},
    {"WrongArgument", "Argument %3 of '%2' of class '%1' must be '%4', not %5."},
    {"WrongValue", "Expected '%1', not %2."},
    {"UnknownClass", "There is no class '%1'."},
    {"UnknownMember", "The class '%1' has no member '%2'."},
    {"UnknownField", "There is no field '%1'."},
    {"AbstractClass", "The class '%1' is abstract: it has no constructor."},
    {"ReadOnlyProperty", "The property '%2' of class '%1' is read-only."},
    {"DuplicateMember", "The class '%1' already has a member '%2'."},
    {"NotInPackage", "'%2' does not belong to the package '%1'."},
    {"IndexOutOfRange", "There is no element %1 among %2."},
    {"SizeMismatch", "An array of %1 by %2 cannot hold %3 elements."},
};

std::string textOf(std::string_view identifier, const std::vector<std::string>& arguments) {
  const auto message =
      std::ranges::find(std::begin(messages), std::end(messages), identifier, &Message::identifier);
  if (message == std::end(messages)) return "Message text unavailable";
  std::string filled;
  for (auto c = message->text.begin(); c != message->text.end(); ++c) {
    if (*c == '%')
      filled += arguments.at(static_cast<std::size_t>(*++c - '1'));
    else
      filled += *c;
  }
  return filled;
}

}  // namespace

Exception::Exception(std::string catalog, std::string identifier,
                     std::vector<std::string> arguments, std::string text)
    : catalog_(std::move(catalog)),
      identifier_(std::move(identifier)),
      arguments_(std::move(arguments)),
      text_(std::move(text)) {}

Exception::~Exception() = default;

void raise(std::string_view identifier, std::vector<std::string> arguments) {
  std::string text = textOf(identifier, arguments);
  throw Exception(std::string(classCatalog), std::string(identifier), std::move(arguments),
                  std::move(text));
}

}  // namespace tyve
