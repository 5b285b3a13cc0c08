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

TypeWord::TypeWord(Name name)
    : name_(name), takesNone_(name.text().ends_with(orNone)), class_(name) {
  if (takesNone_) class_ = intern(name.text().substr(0, name.text().size() - orNone.size()));
}

bool TypeWord::isClassOf(const Value& value) const {
  const Name given = value.className();
  if (given == class_) return true;
  const COSClassInfo* const info = ClassSystem::getInstance().findClass(given);
  return info && info->isSubclassOf(class_);
}

bool TypeWord::fits(const Value& value, std::optional<Value>& made) const {
  if (value.className() == name_) return true;
  if (const Conversion* const conversion = conversion_.load(std::memory_order_acquire)) {
    made = (*conversion)(value);
    return made.has_value();
  }
  return isClassOf(value) || (takesNone_ && !value.className());
}

void TypeRepository::addConversion(Name word, Conversion conversion) {
  const std::lock_guard lock(mutex_);
  TypeWord& known = words_.try_emplace(word, word).first->second;
  if (known.owned_) return;
  known.owned_ = std::make_unique<const Conversion>(std::move(conversion));
  known.conversion_.store(known.owned_.get(), std::memory_order_release);
}

const TypeWord& TypeRepository::word(Name name) {
  const std::lock_guard lock(mutex_);
  return words_.try_emplace(name, name).first->second;
}

std::optional<Value> TypeRepository::convert(const Value& value, Name name) {
  std::optional<Value> made;
  if (word(name).fits(value, made) && !made) made = value;
  return made;
}

namespace detail {

void initStringDataTypes() {
  addMarshalers<StringPolicy, StringCollectionPolicy>(ClassSystem::getInstance().types());
}

}  // namespace detail

}  // namespace tyve::factory
