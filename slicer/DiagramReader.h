#pragma once

#include <string>
#include <string_view>

#include "Diagram.h"

namespace torvan::slicer {

/// Reads the bytes of a block diagram file, packed (zip) or plain XML; they decide which, not its
/// name, which is for error messages. Throws DiagramError when they are damaged.
Diagram readDiagram(std::string_view bytes, const std::string& name);

}  // namespace torvan::slicer
