#include "engine/factor_folder.h"

#include <limits>
#include <system_error>
#include <utility>

#include "engine/locked_folder.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// More runs at a time are not expected in one folder.
constexpr int MostFolders = 64;

fs::path NameOf(const fs::path& parent, int number) {
  return parent / ("kvx-factors-" + std::to_string(number));
}

[[noreturn]] void StopFolder(const std::string& parent, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::ResultFile, "The folder for the factors, \"" + parent +
                                                       "\", cannot be written to: " + reason + "."};
}

// Makes it this run's, unless another has it. Without locks nothing tells what a killed run has
// left from the files of one that is at work: then only what was made just now is this run's.
LockResult TakeAlone(const fs::path& path, FactorFolder& folder, std::string& reason) {
  bool isNew = false;
  const LockResult result = TakeFolder(path, folder.lock, isNew, reason);
  if (result == LockResult::Taken || (result == LockResult::Unlocked && isNew)) folder.path = path;
  if (result == LockResult::Unlocked && !isNew) ReturnFolder(folder.lock);
  return result;
}

// What killed runs have left.
void RemoveLeftOvers(const fs::path& parent) {
  for (int number = 1; number <= MostFolders; ++number) {
    FactorFolder left;  // goes with its files
    const fs::path path = NameOf(parent, number);
    std::error_code error;
    std::string reason;
    if (fs::is_directory(path, error)) TakeAlone(path, left, reason);
  }
}

}  // namespace

FactorFolder::~FactorFolder() { RemoveFactorFolder(*this); }

void RemoveFactorFolder(FactorFolder& folder) {
  // A factorisation that is at work may make a file at this moment.
  constexpr int Attempts = 8;
  for (int k = 0; k < Attempts && !folder.path.empty(); ++k) {
    const fs::path path = std::move(folder.path);
    folder.path.clear();
    EmptyFolder(path);
    LeaveFolder(path, folder.lock);
    std::error_code error;
    std::string reason;
    if (fs::is_directory(path, error)) TakeAlone(path, folder, reason);
  }
}

void MakeFactorFolder(const std::string& parent, FactorFolder& folder) {
  const fs::path place = fs::absolute(fs::u8path(parent));
  std::error_code error;
  if (!fs::is_directory(place, error)) {
    StopFolder(parent, error ? error.message() : "it is no folder");
  }
  RemoveLeftOvers(place);
  for (int number = 1; number <= MostFolders; ++number) {
    std::string reason;
    const LockResult result = TakeAlone(NameOf(place, number), folder, reason);
    if (result == LockResult::Failed) StopFolder(parent, reason);
    if (!folder.path.empty()) return;
  }
  StopFolder(parent, "too many runs are at work there, or have left folders");
}

std::uint64_t ReadFreeDisk(const std::string& parent) {
  std::error_code error;
  const fs::space_info space = fs::space(fs::u8path(parent), error);
  return error ? std::numeric_limits<std::uint64_t>::max() : space.available;
}

}  // namespace kvx
