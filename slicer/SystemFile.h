#pragma once

#include <string>

#include "BlockSystem.h"

namespace torvan::slicer {

/// Whether the file holds a saved model, by its content. False for one that cannot be opened.
bool isSystemFile(const std::string& file);

/// Writes the model of a system that is not solved yet, and beside it, as FILE.values, the sets
/// that its equations and types are made of. Throws orb::zero::Exception.
void saveSystem(const BlockSystem& system, const std::string& file);

/// Reads both, into a model of their own. Throws DiagramError or orb::zero::Exception.
BlockSystem loadSystem(const std::string& file);

}  // namespace torvan::slicer
