#include <torvan/datamodel/impl/ValueParts.h>

#include <algorithm>
#include <array>

#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/ArrayType.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/PowerSetType.h>
#include <torvan/datamodel/Struct.h>
#include <torvan/datamodel/StructType.h>

namespace torvan::datamodel {

const ValueForm& formOf(const meta::ClassInfo& valueOrType) {
  static const std::array forms{
      ValueForm{PowerSet::metaClass(), PowerSetType::metaClass(), "bits", "universe"},
      ValueForm{Struct::metaClass(), StructType::metaClass(), "fields", "fields"},
      ValueForm{Array::metaClass(), ArrayType::metaClass(), "elements", "element"}};
  const auto found = std::find_if(forms.begin(), forms.end(), [&](const ValueForm& form) {
    return valueOrType.isKindOf(form.value) || valueOrType.isKindOf(form.type);
  });
  if (found == forms.end()) orb::zero::raise("InvalidValue");
  return *found;
}

bool fits(const LatticeType& type, const ValueForm& form) {
  return !type || type->getMetaClass().isKindOf(form.type);
}

std::vector<ValuePart> partsOf(const LatticeValue& value) {
  std::vector<ValuePart> parts;
  const meta::ClassInfo& kind = value->getMetaClass();
  if (kind.isKindOf(Struct::metaClass())) {
    const Struct record{value};
    parts.reserve(record->getValues().size());
    for (const auto& [name, field] : record->getValues())
      parts.push_back({name, field->getValue()});
  } else if (kind.isKindOf(Array::metaClass())) {
    const Array array{value};
    parts.reserve(array->getValues().size());
    for (const auto& [index, element] : array->getValues())
      parts.push_back({std::to_string(index), element->getValue()});
  }
  return parts;
}

}  // namespace torvan::datamodel
