#include <torvan/datamodel/impl/ValueDraft.h>

#include <torvan/datamodel/Array.h>
#include <torvan/datamodel/PowerSet.h>
#include <torvan/datamodel/Struct.h>
#include <torvan/datamodel/impl/ValueParts.h>

namespace torvan::datamodel {
namespace {

/// There are as many digits as the size asks for, so that the bits are not much larger than the
/// text, whatever the size says.
BitSet bitsOf(const std::string& digits, std::uint64_t size) {
  if (digits.size() != size / 4 + (size % 4 != 0))
    throw TextProblem{"The size asks for another number of digits."};
  std::vector<BitSet::block_type> words((digits.size() + 15) / 16);
  std::size_t place = digits.size();
  for (const char digit : digits) {
    --place;
    BitSet::block_type four = 0;
    if (std::from_chars(&digit, &digit + 1, four, 16).ec != std::errc())
      throw TextProblem{"The bits are not hexadecimal."};
    if (place == size / 4 && four >> size % 4 != 0)
      throw TextProblem{"The bits are more than the size."};
    words[place / 16] |= four << place % 16 * 4;
  }
  BitSet bits(words.begin(), words.end());
  bits.resize(size);
  return bits;
}

}  // namespace

void DraftContent::set(std::string_view word) {
  if (!word_.empty()) throw TextProblem{"It is of two kinds."};
  word_ = word;
}

LatticeType TypeDraft::make(TypeFactory& factory) const {
  if (content.is("fields")) return factory.createStructType(name, names, types);
  if (content.is("") || !size) throw TextProblem{"The type is not complete."};
  if (content.is("element")) return factory.createArrayType(name, types.front(), *size);
  PowerSetType type = factory.createPowerSetType(name, *size);
  for (const std::string& each : names) type->getUniverse().add(each);
  return type;
}

void ValueDraft::begin(const orb::zero::Model& model, std::string_view word) {
  content.set(word);
  composite = content.is("fields") ? LatticeValue(Struct::Builder(model).create())
                                   : LatticeValue(Array::Builder(model).create());
}

void ValueDraft::store(const std::string& key, const LatticeValue& part) const {
  if (content.is("fields")) return Struct(composite)->store(key, part);
  const auto index = parseNumber<std::uint16_t>(key);
  if (index == 0 || std::to_string(index) != key) throw TextProblem{"This is no index."};
  Array(composite)->store(index, part);
}

LatticeValue ValueDraft::make(const orb::zero::Model& model) const {
  LatticeValue value = composite;
  if (!value) {
    if (content.is("") || !size) throw TextProblem{"The value is not complete."};
    PowerSet::Builder builder(model);
    builder->basicSetValue(bitsOf(digits, *size));
    value = builder.create();
  }
  if (!fits(type, formOf(value->getMetaClass())))
    throw TextProblem{"The value is of another kind than its type."};
  value->setType(type);
  return value;
}

}  // namespace torvan::datamodel
