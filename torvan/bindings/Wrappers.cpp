#include <torvan/bindings/Wrappers.h>

namespace torvan::datamodel::hb {

std::string printedForHost(const tyve::Value& object) {
  constexpr std::size_t most = 10'000;
  return PrettyPrinter::excerpt(
      orb::zero::hb::elementOf(object, orb::zero::ModelElement::metaClass()), most);
}

}  // namespace torvan::datamodel::hb
