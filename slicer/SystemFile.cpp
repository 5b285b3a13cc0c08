#include "SystemFile.h"

#include <exception>
#include <filesystem>

#include <torvan/datamodel/SessionFile.h>

#include "DiagramError.h"
#include "Uninterrupted.h"

namespace torvan::slicer {

bool looksLikeSystem(std::string_view bytes) {
  const std::size_t first = bytes.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && bytes[first] == '{';
}

std::vector<std::string> filesOf(const std::string& file) {
  return {file, datamodel::bitsFileOf(file)};
}

void saveSystem(const BlockSystem& system, const std::string& file) {
  const Uninterrupted whole;
  datamodel::saveWithBits(system.equations->getModel(), file);
}

BlockSystem loadSystem(const std::string& file) {
  if (!std::filesystem::is_regular_file(file))
    throw DiagramError(file, "a saved system is in two files, and cannot come through a pipe");
  const datamodel::Session session;
  datamodel::loadWithBits(session.model(), file);
  try {
    return BlockSystem::of(session.model());
  } catch (const std::exception& error) {
    throw DiagramError(file, error.what());
  }
}

}  // namespace torvan::slicer
