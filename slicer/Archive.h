#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

struct zip;

namespace torvan::slicer {

/// All bytes of a file. Throws DiagramError when it cannot be opened or read.
std::string readFile(const std::filesystem::path& file);

/// Whether the bytes start like a zip archive.
bool looksLikeArchive(std::string_view bytes);

/// A zip archive held in memory.
class Archive {
 public:
  /// `bytes` must outlive the archive; `name` names it in error messages.
  /// Throws DiagramError when the bytes are no zip archive.
  Archive(std::string_view bytes, std::string name);

  /// The unpacked bytes of an entry, at most 64 MiB.
  /// Throws DiagramError when the entry is absent, damaged or larger.
  std::string entry(const std::string& entryName) const;

 private:
  struct Closer {
    void operator()(zip* archive) const;
  };

  std::string name_;
  std::unique_ptr<zip, Closer> archive_;
};

}  // namespace torvan::slicer
