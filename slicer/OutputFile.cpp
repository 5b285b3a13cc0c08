#include "OutputFile.h"

#include <csignal>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace torvan::slicer {
namespace {

/// Keeps Ctrl-C waiting.
class Uninterrupted {
 public:
  Uninterrupted() {
    sigset_t interrupts;
    sigemptyset(&interrupts);
    sigaddset(&interrupts, SIGINT);
    sigaddset(&interrupts, SIGTERM);
    sigprocmask(SIG_BLOCK, &interrupts, &before_);
  }
  Uninterrupted(const Uninterrupted&) = delete;
  Uninterrupted& operator=(const Uninterrupted&) = delete;
  ~Uninterrupted() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

}  // namespace

void writeOutput(const std::string& text, const std::string& file) {
  if (file.empty()) {
    if (!(std::cout << text << std::flush)) throw std::runtime_error("cannot write the output");
    return;
  }
  writeOutput([&text](std::ostream& out) { out << text; }, file);
}

void writeOutput(const std::function<void(std::ostream&)>& write, const std::string& file) {
  const Uninterrupted whole;
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
  throw std::runtime_error("cannot write '" + file + "'");
}

}  // namespace torvan::slicer
