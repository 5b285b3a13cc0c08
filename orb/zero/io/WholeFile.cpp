#include <orb/zero/io/WholeFile.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <orb/zero/Exception.h>

namespace orb::zero::io {

void writeWhole(const std::string& file, const std::function<void(std::ostream&)>& write) {
  // The rename would put a file in the place of a device.
  std::error_code none;
  const auto status = std::filesystem::status(file, none);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    raise("CannotSave", {"", "", "'" + file + "' is no file"});
  const std::string part = file + ".part";
  std::ofstream stream(part, std::ios::binary);
  try {
    if (stream) write(stream);
  } catch (...) {
    std::remove(part.c_str());
    if (stream) throw;  // or else it only says that the stream failed
  }
  stream.close();
  if (stream && std::rename(part.c_str(), file.c_str()) == 0) return;
  std::remove(part.c_str());
  raise("CannotSave", {"", "", "cannot write '" + file + "'"});
}

}  // namespace orb::zero::io
