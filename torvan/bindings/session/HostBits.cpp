#include <torvan/bindings/session/impl/HostBits.h>

#include <charconv>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

#include <orb/zero/Exception.h>
#include <tyve/factory/Marshaler.h>

namespace torvan::datamodel::hb {
namespace {

[[noreturn]] void fail(std::string value, std::string problem) {
  orb::zero::raise("InvalidValue", {std::move(value), std::move(problem)});
}

/// The number, when it is integral and from 0 to so many; or else raises an error with the problem.
std::size_t numberIn(const tyve::Value& value, double most, const char* problem) {
  const double number = tyve::factory::numberOf(value).value_or(-1);
  if (!(number >= 0 && number <= most && number == std::trunc(number)))
    fail(value.describe(), problem);
  return static_cast<std::size_t>(number);
}

class BitsReader {
 public:
  BitsReader(std::size_t size, const PowerSetType& type) : bits_(size), type_(type) {}

  BitSet read(const tyve::Value& value) {
    switch (value.kind()) {
      case tyve::Kind::Char:
        readText(value.text());
        break;
      case tyve::Kind::String:
        for (const std::string& name : value.strings()) addName(name);
        break;
      case tyve::Kind::Cell:
        for (const tyve::Value& item : value.cells()) addItem(item);
        break;
      default:
        if (tyve::factory::numberOf(value)) {
          readNumber(value);
        } else if (value.is(tyve::Kind::Object) || value.is(tyve::Kind::Struct)) {
          fail(value.describe(), "this is no set");
        } else {
          for (std::size_t i = 0; i < value.count(); ++i) addItem(value.at(i));
        }
    }
    return std::move(bits_);
  }

 private:
  void addItem(const tyve::Value& item) {
    if (item.is(tyve::Kind::Char)) return addName(item.text());
    if (!item.isScalar() || item.is(tyve::Kind::String) || item.is(tyve::Kind::Cell))
      fail(item.describe(), "elements are given one by one");
    const auto most = static_cast<double>(bits_.size());
    const std::size_t index = numberIn(item, most, "this is no element of the universe");
    if (index == 0) fail("0", "elements are counted from 1");
    bits_.set(index - 1);
  }
  void addName(const std::string& name) {
    if (places_.empty() && type_) {
      std::size_t place = 0;
      for (const std::string& each : type_->getUniverse()) places_.emplace(each, place++);
    }
    const auto [first, last] = places_.equal_range(name);
    bool isKnown = false;
    for (auto found = first; found != last; ++found) {
      if (found->second >= bits_.size()) continue;
      bits_.set(found->second);
      isKnown = true;
    }
    if (!isKnown) fail("'" + name + "'", "this is no element of the universe");
  }
  void readNumber(const tyve::Value& value) {
    constexpr double most = 9007199254740992.0;  // what a double counts to
    const std::size_t number = numberIn(
        value, most,
        "a number that stands for bits is whole and not negative; above 2^53 it is given as text");
    for (std::size_t bit = 0; bit < 64; ++bit)
      if (number >> bit & 1) set(bit);
  }
  void readText(const std::string& text) {
    if (text.starts_with("0x")) {
      if (text.size() == 2) fail("'" + text + "'", "digits are missing");
      for (std::size_t place = 2; place < text.size(); ++place) {
        unsigned digit = 0;
        const auto read = std::from_chars(&text[place], &text[place] + 1, digit, 16);
        if (read.ec != std::errc()) fail("", "the digits of a set are hexadecimal behind '0x'");
        for (std::size_t bit = 0; bit < 4; ++bit)
          if (digit >> bit & 1) set((text.size() - 1 - place) * 4 + bit);
      }
      return;
    }
    if (text.size() != bits_.size())
      fail("", "a set of " + std::to_string(bits_.size()) + " elements has as many digits");
    for (std::size_t place = 0; place < text.size(); ++place)
      if (text[place] == '1')
        bits_.set(text.size() - 1 - place);
      else if (text[place] != '0')
        fail("", "the digits of a set are 0 and 1");
  }
  void set(std::size_t bit) {
    if (bit >= bits_.size())
      fail("", "the universe has " + std::to_string(bits_.size()) + " elements only");
    bits_.set(bit);
  }

  BitSet bits_;
  const PowerSetType& type_;
  std::unordered_multimap<std::string, std::size_t> places_;
};

}  // namespace

BitSet bitsFromHost(const tyve::Value& value, const PowerSetType& type) {
  return BitsReader(type->getNumElems(), type).read(value);
}

BitSet bitsFromHost(const tyve::Value& value, const PowerSet& set) {
  const PowerSetType type{set->getType()};
  return BitsReader(type ? type->getNumElems() : set->bits().size(), type).read(value);
}

}  // namespace torvan::datamodel::hb
