#pragma once

#include <string>
#include <utility>
#include <vector>

#include <orb/zero/ModelChanges.h>
#include <torvan/datamodel.h>

#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {

/// Writes down what a listener is told, a line each time: "+x" for what was created, "-Variable"
/// for what is gone, "x.name:a>b" for a change.
class Diary final : public orb::zero::ModelListener {
 public:
  void changed(const orb::zero::ModelChanges& changes) override {
    std::string line;
    for (const ModelElement& element : changes.created) line += " +" + nameOf(element);
    for (const auto& [id, type] : changes.destroyed) line += " -" + simpleName(*type);
    for (const auto& [element, properties] : changes.changed)
      for (const auto& [property, before, after] : properties)
        line += ' ' + nameOf(element) + '.' + std::string(property->name) + ':' + textOf(before) +
                '>' + textOf(after);
    lines.push_back(line.empty() ? "nothing" : line.substr(1));
  }
  /// What was told since it was asked for last.
  std::vector<std::string> news() { return std::exchange(lines, {}); }

  static std::string textOf(const orb::zero::Value& value) {
    return datamodel::textOf(value, nameOf);
  }

  std::vector<std::string> lines;

 private:
  static std::string simpleName(const meta::ClassInfo& type) {
    return std::string(type.name.substr(type.name.rfind('.') + 1));
  }
  static std::string nameOf(const ModelElement& element) {
    if (!element) return element.get() ? "gone" : "none";
    const Property* const property = element->getPropertyByName("name");
    const auto name = property ? element->getPropertyValue(*property) : orb::zero::Value();
    return name.isEmpty() ? simpleName(element->getMetaClass()) : name.getValue<std::string>();
  }
};

}  // namespace torvan::datamodel
