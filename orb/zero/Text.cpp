#include <orb/zero/Text.h>

#include <boost/locale/encoding_utf.hpp>

namespace orb::zero {

using boost::locale::conv::utf_to_utf;

std::u16string toUtf16(std::string_view text) {
  return utf_to_utf<char16_t>(text.data(), text.data() + text.size());
}
std::string toUtf8(std::u16string_view text) {
  return utf_to_utf<char>(text.data(), text.data() + text.size());
}

}  // namespace orb::zero
