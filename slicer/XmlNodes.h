#pragma once

#include <pugixml.hpp>

#include <string_view>

namespace torvan::slicer {

/// The child element that plays the given role, null when there is none.
inline pugi::xml_node childAs(const pugi::xml_node& node, std::string_view role) {
  return node.find_child(
      [role](const pugi::xml_node& child) { return role == child.attribute("as").value(); });
}

}  // namespace torvan::slicer
