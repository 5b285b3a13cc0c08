#include <orb/zero/Exception.h>

#include <orb/zero/MessageCatalog.h>

#include <utility>

namespace orb::zero {

Exception::Exception(std::string catalog, std::string identifier,
                     std::vector<std::string> arguments)
    : Exception(catalog, identifier, arguments,
                MessageCatalog::text(catalog, identifier, arguments)) {}

Exception::Exception(std::string catalog, std::string identifier,
                     std::vector<std::string> arguments, std::string text)
    : catalog_(std::move(catalog)),
      identifier_(std::move(identifier)),
      arguments_(std::move(arguments)),
      text_(std::move(text)) {}

Exception::~Exception() = default;

void raise(std::string_view identifier, std::vector<std::string> arguments) {
  throw Exception(std::string(frameworkCatalog), std::string(identifier), std::move(arguments));
}

}  // namespace orb::zero
