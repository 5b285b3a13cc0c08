#include <torvan/datamodel/ModelClasses.h>

#include <algorithm>
#include <array>

#include <orb/zero/meta/Emit.h>
#include <torvan/datamodel/Ref.h>

namespace torvan::datamodel {
namespace {

template <class... X>
auto classesOf(ClassList<X...>) {
  // Used: `metaClass()` is called from elsewhere, so its definitions must not be optimised away.
  [[gnu::used]] static constexpr std::array functions{&X::metaClass...};
  std::array<const meta::ClassInfo*, sizeof...(X)> classes;
  std::transform(functions.begin(), functions.end(), classes.begin(),
                 [](auto function) { return &function(); });
  return classes;
}

}  // namespace

std::span<const meta::ClassInfo* const> modelClasses() {
  static const auto all = classesOf(ModelClasses());
  return all;
}

}  // namespace torvan::datamodel
