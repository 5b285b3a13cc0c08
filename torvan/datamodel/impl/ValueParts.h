#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <torvan/datamodel/LatticeValue.h>

namespace torvan::datamodel {

/// What a kind of value, and its type, hold, and the names of that in the text.
struct ValueForm {
  const meta::ClassInfo& value;
  const meta::ClassInfo& type;
  std::string_view content;
  std::string_view typeContent;
};

/// That of the class, of values or of types.
const ValueForm& formOf(const meta::ClassInfo& valueOrType);

/// Whether a value of the form may have the type, which may be none.
bool fits(const LatticeType& type, const ValueForm& form);

/// A stored part of a composite value, perhaps empty, under its name or index.
struct ValuePart {
  std::string key;
  LatticeValue value;
};

/// In the order of their keys; a power set has none.
std::vector<ValuePart> partsOf(const LatticeValue& value);

}  // namespace torvan::datamodel
