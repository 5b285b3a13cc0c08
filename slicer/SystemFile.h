#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "BlockSystem.h"

namespace torvan::slicer {

/// Whether the bytes of a file start like a saved model.
bool looksLikeSystem(std::string_view bytes);

/// The names of the files in which a system of this name is saved.
std::vector<std::string> filesOf(const std::string& file);

/// Writes the model of a system that is not solved yet, and beside it, as FILE.values, the sets
/// that its equations and types are made of. Throws orb::zero::Exception.
void saveSystem(const BlockSystem& system, const std::string& file);

/// Reads both, into a model of their own. Throws DiagramError or orb::zero::Exception.
BlockSystem loadSystem(const std::string& file);

}  // namespace torvan::slicer
