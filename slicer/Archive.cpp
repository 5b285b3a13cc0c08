#include "Archive.h"

#include <zip.h>

#include <fstream>
#include <sstream>
#include <utility>

#include "DiagramError.h"

namespace torvan::slicer {
namespace {

constexpr zip_uint64_t maxEntrySize = 64 << 20;

struct EntryCloser {
  void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

}  // namespace

std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream || std::filesystem::is_directory(file))
    throw DiagramError(file.string(), "cannot open the file");
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  if (bytes.bad()) throw DiagramError(file.string(), "cannot read the file");
  return std::move(bytes).str();
}

bool looksLikeArchive(std::string_view bytes) { return bytes.starts_with("PK"); }

Archive::Archive(std::string_view bytes, std::string name) : name_(std::move(name)) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  if (source) archive_.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
  if (!archive_) {
    std::string problem = "not a zip archive";
    if (zip_error_code_zip(&error) != ZIP_ER_NOZIP)
      problem += std::string(" (") + zip_error_strerror(&error) + ')';
    zip_source_free(source);
    zip_error_fini(&error);
    throw DiagramError(name_, problem);
  }
}

std::string Archive::entry(const std::string& entryName) const {
  zip_stat_t status;
  if (zip_stat(archive_.get(), entryName.c_str(), 0, &status) != 0)
    throw DiagramError(name_, "has no " + entryName);
  if (!(status.valid & ZIP_STAT_SIZE) || status.size > maxEntrySize)
    throw DiagramError(name_, entryName + " is too large");
  std::string bytes(status.size, '\0');
  const std::unique_ptr<zip_file_t, EntryCloser> file(
      zip_fopen_index(archive_.get(), status.index, 0));
  if (!file ||
      zip_fread(file.get(), bytes.data(), bytes.size()) != static_cast<zip_int64_t>(bytes.size()))
    throw DiagramError(name_, entryName + " is damaged");
  return bytes;
}

void Archive::Closer::operator()(zip* archive) const { zip_discard(archive); }

}  // namespace torvan::slicer
