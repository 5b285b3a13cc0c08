#include <orb/zero/hb/EnumWrapperInfo.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <orb/zero/Text.h>
#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/EnumLiteral.h>
#include <tyve/ClassSystem.h>
#include <tyve/Exception.h>
#include <tyve/factory/Marshaler.h>

namespace orb::zero::hb {
namespace {

using Arguments = std::span<const tyve::Value>;

/// Texts, since handles of the description belong to the thread that registers the class.
struct Literal {
  std::int32_t value;
  std::string name, identifier;
};

/// The members that a value is or names; nothing when it is and names none.
std::optional<tyve::Value> toMembers(tyve::Name className, const tyve::Value& value) {
  if (value.className() == className) return value;
  const auto texts = tyve::factory::StringCollectionPolicy::fromHost(value);
  if (!texts) return std::nullopt;
  const tyve::COSClassInfo& info = tyve::ClassSystem::getInstance().getClass(className);
  std::vector<std::int32_t> numbers;
  for (const std::string& text : *texts) {
    const auto* const member = info.findEnumerationMember(text);
    if (!member) return std::nullopt;
    numbers.push_back(member->value);
  }
  return info.makeEnumeration(tyve::Value::row<std::int32_t>(numbers));
}

void addConversion(tyve::Name className, std::string_view suffix, std::size_t least,
                   std::size_t most) {
  tyve::ClassSystem::getInstance().types().addConversion(
      tyve::intern(className.text() + std::string(suffix)),
      [=](const tyve::Value& value) -> std::optional<tyve::Value> {
        auto members = toMembers(className, value);
        if (members && (members->count() < least || members->count() > most)) members.reset();
        return members;
      });
}

}  // namespace

EnumWrapperInfo::EnumWrapperInfo(const meta::Enum& type, std::string documentation)
    : tyve::COSClassInfo(tyve::intern(type->getQualifiedName()), std::move(documentation)) {
  tyve::factory::detail::initStringDataTypes();
  std::vector<Literal> literals;
  for (const meta::EnumLiteral& literal : type->getLiterals()) {
    literals.push_back(
        {literal->getValue(), toUtf8(literal->getName()), literal->getPublicIdentifier()});
    addEnumerationMember(tyve::intern(literals.back().name), literals.back().value);
  }

  const auto add = [&](std::string_view name, std::string_view result, auto read,
                       std::string text) {
    addMethod(
        tyve::intern(name), {{}, tyve::intern(result), {getName()}},
        [this, literals, read](Arguments given) {
          const auto value = given.front().number<std::int32_t>();
          const auto found = std::ranges::find(literals, value, &Literal::value);
          if (found == literals.end())
            tyve::raise("UnknownMember", {getName().text(), std::to_string(value)});
          return read(*found);
        },
        std::move(text));
  };
  add(
      "getValue", "int32 scalar",
      [](const Literal& literal) { return tyve::Value::scalar(literal.value); },
      "The number of the member.");
  add(
      "getLiteral", "TyveFactoryString scalar",
      [](const Literal& literal) { return tyve::Value::strings({literal.name}); },
      "The name of the member.");
  add(
      "getPublicIdentifier", "TyveFactoryString scalar",
      [](const Literal& literal) { return tyve::Value::strings({literal.identifier}); },
      "The name of the member behind that of the class.");

  addConversion(getName(), "", 0, std::numeric_limits<std::size_t>::max());
  addConversion(getName(), " property", 0, 1);
  addConversion(getName(), " scalar", 1, 1);
}

EnumWrapperInfo::~EnumWrapperInfo() = default;

}  // namespace orb::zero::hb
