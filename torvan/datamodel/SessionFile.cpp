#include <torvan/datamodel/SessionFile.h>

#include <filesystem>
#include <fstream>
#include <system_error>

#include <orb/zero/Exception.h>
#include <orb/zero/Transaction.h>
#include <orb/zero/io/ModelFile.h>
#include <orb/zero/io/WholeFile.h>
#include <torvan/datamodel/ValueArchive.h>

namespace torvan::datamodel {
namespace {

void restoreBits(const orb::zero::Model& model, const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) orb::zero::raise("CannotImportValues", {file, "cannot open the file"});
  try {
    restoreValues(in, powerSetsOf(model));
  } catch (const orb::zero::Exception& error) {
    if (error.getIdentifier() != "CannotImportValues") throw;
    orb::zero::raise(error.getIdentifier(),
                     {file + ": " + error.getArguments()[0], error.getArguments()[1]});
  }
}

}  // namespace

std::string bitsFileOf(const std::string& file) {
  std::error_code error;
  const bool isLink =
      std::filesystem::is_symlink(file, error) && std::filesystem::is_regular_file(file, error);
  return (isLink ? std::filesystem::canonical(file).string() : file) + ".values";
}

void saveWithBits(const orb::zero::Model& model, const std::string& file) {
  const auto writeBits = [&](std::ostream& out) { exportValues(powerSetsOf(model), out); };
  // The bits take their place once the model is written, and only has to take its own.
  orb::zero::io::writeWhole(file, [&](std::ostream& out) {
    orb::zero::io::save(model, out);
    if (out.flush()) orb::zero::io::writeWhole(bitsFileOf(file), writeBits);
  });
}

void loadWithBits(const orb::zero::Model& model, const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) orb::zero::raise("CannotLoad", {file, "", "", "", "cannot open the file"});
  orb::zero::Transaction unit(model);
  orb::zero::io::load(model, in, file);
  restoreBits(model, bitsFileOf(file));
  unit.commit();
}

}  // namespace torvan::datamodel
