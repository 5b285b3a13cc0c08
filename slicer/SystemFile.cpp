#include "SystemFile.h"

#include <exception>
#include <fstream>

#include <orb/zero/io/ModelFile.h>
#include <torvan/datamodel/ValueArchive.h>

#include "DiagramError.h"
#include "OutputFile.h"

namespace torvan::slicer {

using namespace datamodel;

namespace {

std::string valuesOf(const std::string& file) { return file + ".values"; }

}  // namespace

bool isSystemFile(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return (in >> std::ws).peek() == '{';
}

void saveSystem(const BlockSystem& system, const std::string& file) {
  const orb::zero::Model model = system.equations->getModel();
  writeOutput([&](std::ostream& out) { exportValues(powerSetsOf(model), out); }, valuesOf(file));
  writeOutput([&](std::ostream& out) { orb::zero::io::save(model, out); }, file);
}

BlockSystem loadSystem(const std::string& file) {
  const Session session;
  std::ifstream in(file, std::ios::binary);
  orb::zero::io::load(session.model(), in, file);

  std::ifstream values(valuesOf(file), std::ios::binary);
  if (!values) throw DiagramError(valuesOf(file), "cannot open the file");
  try {
    restoreValues(values, powerSetsOf(session.model()));
  } catch (const std::exception& error) {
    throw DiagramError(valuesOf(file), error.what());
  }
  try {
    return BlockSystem::of(session.model());
  } catch (const std::exception& error) {
    throw DiagramError(file, error.what());
  }
}

}  // namespace torvan::slicer
