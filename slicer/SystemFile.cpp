#include "SystemFile.h"

#include <exception>
#include <fstream>

#include <torvan/datamodel/SessionFile.h>

#include "DiagramError.h"
#include "Uninterrupted.h"

namespace torvan::slicer {

bool isSystemFile(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return (in >> std::ws).peek() == '{';
}

void saveSystem(const BlockSystem& system, const std::string& file) {
  const Uninterrupted whole;
  datamodel::saveWithBits(system.equations->getModel(), file);
}

BlockSystem loadSystem(const std::string& file) {
  const datamodel::Session session;
  datamodel::loadWithBits(session.model(), file);
  try {
    return BlockSystem::of(session.model());
  } catch (const std::exception& error) {
    throw DiagramError(file, error.what());
  }
}

}  // namespace torvan::slicer
