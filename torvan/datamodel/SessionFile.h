#pragma once

#include <string>

#include <orb/zero/Model.h>
#include <torvan/datamodel/Api.h>

/// A model with the bits of its sets, in two files: FILE, see `orb/zero/io/ModelFile.h`, and
/// FILE.values, see `ValueArchive.h`.
namespace torvan::datamodel {

/// The name of the second, which is beside the file that a link leads to.
TORVAN_DATAMODEL_API std::string bitsFileOf(const std::string& file);

/// Writes both, or leaves both as they were; but FILE.values is new already when FILE has been
/// written beside its place and cannot take it, as in a folder that protects the files of others.
/// Raises "CannotSave" and "CannotExportValues".
TORVAN_DATAMODEL_API void saveWithBits(const orb::zero::Model& model, const std::string& file);

/// Adds what both hold to an empty model, as one unit; a set that had no value has an empty one.
/// Raises "CannotLoad" and "CannotImportValues", with the name of the file; the model is as it was
/// then.
TORVAN_DATAMODEL_API void loadWithBits(const orb::zero::Model& model, const std::string& file);

}  // namespace torvan::datamodel
