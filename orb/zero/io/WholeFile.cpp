#include <orb/zero/io/WholeFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <ext/stdio_filebuf.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <ostream>
#include <system_error>

#include <orb/zero/Exception.h>

namespace orb::zero::io {
namespace {

/// A new file with a name of its own, which is gone at the end unless it was moved.
class PartFile {
 public:
  PartFile(const std::filesystem::path& folder, mode_t mode) {
    static std::atomic<unsigned> count;
    do {
      path_ = folder / ('.' + std::to_string(getpid()) + '-' + std::to_string(count++) + ".part");
      descriptor_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    } while (descriptor_ < 0 && errno == EEXIST);
    isHere_ = descriptor_ >= 0;
  }
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;
  ~PartFile() {
    if (isHere_) unlink(path_.c_str());
  }

  /// Open for writing, and left open; negative if the file could not be made.
  int descriptor() const { return descriptor_; }
  bool moveTo(const std::filesystem::path& target) {
    isHere_ = std::rename(path_.c_str(), target.c_str()) != 0;
    return !isHere_;
  }

 private:
  std::filesystem::path path_;
  int descriptor_ = -1;
  bool isHere_ = false;
};

[[noreturn]] void fail(const std::string& cause) { raise("CannotSave", {"", "", cause}); }

}  // namespace

void writeWhole(const std::string& file, const std::function<void(std::ostream&)>& write) {
  namespace fs = std::filesystem;
  std::error_code none;
  const fs::file_status before = fs::status(file, none);
  if (!fs::status_known(before)) fail("cannot write '" + file + "'");
  // The rename would put a file in the place of a device, or of a link.
  if (fs::exists(before) && !fs::is_regular_file(before)) fail("'" + file + "' is no file");
  fs::path target = file;
  while (fs::is_symlink(target, none))
    target = target.parent_path() / fs::read_symlink(target, none);

  const mode_t mode =
      fs::exists(before) ? static_cast<mode_t>(before.permissions() & fs::perms::all) : 0666;
  PartFile part(target.parent_path(), mode);
  __gnu_cxx::stdio_filebuf<char> buffer(part.descriptor(), std::ios::out | std::ios::binary);
  std::ostream stream(&buffer);
  if (!buffer.is_open()) stream.setstate(std::ios::badbit);
  // Rights that the process withholds from new files, the former one may have had.
  if (fs::exists(before)) fchmod(part.descriptor(), mode);
  try {
    if (stream) write(stream);
  } catch (...) {
    if (stream) throw;  // or else it only says that the stream failed
  }
  if (!buffer.close() || !stream || !part.moveTo(target)) fail("cannot write '" + file + "'");
}

}  // namespace orb::zero::io
