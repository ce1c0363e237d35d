#include "audit/whole_file.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "report/stop.h"

namespace kvx {

namespace {

namespace fs = std::filesystem;

void RemoveQuietly(const std::string& fileName) {
  std::error_code ignored;
  fs::remove(fileName, ignored);
}

[[noreturn]] void StopWriting(const std::string& fileName, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::ResultFile,
                     fileName + " cannot be written" + (reason.empty() ? "" : ": " + reason) + "."};
}

// The text of the last error of the C library; "" if it has not said anything.
std::string LastReason() {
  return errno == 0 ? std::string() : std::generic_category().message(errno);
}

// Returns false, with the reason in errno, where not all bytes could be written.
bool WriteBeside(const std::string& beside,
                 const std::function<void(std::ostream& stream)>& write) {
  errno = 0;
  std::ofstream stream(beside, std::ios::binary | std::ios::trunc);
  if (!stream.is_open()) return false;
  write(stream);
  if (!stream) return false;
  errno = 0;
  stream.close();
  return static_cast<bool>(stream);
}

}  // namespace

std::string NameBeside(const std::string& fileName) { return fileName + ".part"; }

void WriteWholeFile(const std::string& fileName,
                    const std::function<void(std::ostream& stream)>& write) {
  const std::string beside = NameBeside(fileName);
  bool isWhole = false;
  try {
    isWhole = WriteBeside(beside, write);
  } catch (...) {
    RemoveQuietly(beside);
    throw;
  }
  if (!isWhole) {
    const std::string reason = LastReason();
    RemoveQuietly(beside);
    StopWriting(fileName, reason);
  }
  std::error_code error;
  fs::rename(beside, fileName, error);
  if (!error) return;
  RemoveQuietly(beside);
  StopWriting(fileName, error.message());
}

}  // namespace kvx
