#include <tyve/factory/TypeRepository.h>

#include <mutex>
#include <utility>

#include <tyve/ClassSystem.h>
#include <tyve/factory/Marshaler.h>

namespace tyve::factory {
namespace {

template <class... Policies>
void addMarshalers(TypeRepository& types) {
  (types.addConversion(intern(Policies::word), &Marshaler<Policies>::convert), ...);
}

}  // namespace

TypeRepository::TypeRepository() {
  addConversion(intern("any"), [](const Value& value) { return value; });
  addMarshalers<CharPolicy, LogicalPolicy, IntegerPolicy<std::uint16_t>,
                IntegerPolicy<std::int32_t>>(*this);
}

void TypeRepository::addConversion(Name word, Conversion conversion) {
  const std::lock_guard lock(mutex_);
  conversions_.try_emplace(word, std::move(conversion));
}

const Conversion* TypeRepository::findConversion(Name word) const {
  const std::shared_lock lock(mutex_);
  const auto found = conversions_.find(word);
  return found == conversions_.end() ? nullptr : &found->second;
}

std::optional<Value> TypeRepository::convert(const Value& value, Name word) const {
  if (const Conversion* const conversion = findConversion(word)) return (*conversion)(value);
  const Name given = value.className();
  if (given == word) return value;
  const COSClassInfo* const info = ClassSystem::getInstance().findClass(given);
  return info && info->isSubclassOf(word) ? std::optional(value) : std::nullopt;
}

namespace detail {

void initStringDataTypes() {
  addMarshalers<StringPolicy, StringCollectionPolicy>(ClassSystem::getInstance().types());
}

}  // namespace detail

}  // namespace tyve::factory
