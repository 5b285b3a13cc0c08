#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "Diagram.h"

namespace torvan::slicer {

/// Reads a block diagram file, packed (zip) or plain XML; its content decides which, not its name.
/// Throws DiagramError when the file cannot be read or is damaged.
Diagram readDiagram(const std::filesystem::path& file);

/// The same for bytes already in memory; `name` stands for the file in error messages.
Diagram readDiagram(std::string_view bytes, const std::string& name);

}  // namespace torvan::slicer
