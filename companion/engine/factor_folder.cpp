#include "engine/factor_folder.h"

#include <limits>
#include <system_error>

#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

constexpr const char* LockName = "lock";

// More runs at a time are not expected in one folder.
constexpr int MostFolders = 64;

fs::path NameOf(const fs::path& parent, int number) {
  return parent / ("kvx-factors-" + std::to_string(number));
}

// All but the lock.
void RemoveFactors(const fs::path& folder) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;  // what cannot be removed now is tried again at the end
    if (entry->path().filename() != LockName) fs::remove_all(entry->path(), ignored);
  }
}

void RemoveFolder(const fs::path& folder, FileLock& lock) {
  RemoveFactors(folder);
  ReleaseLock(folder / LockName, lock);
  std::error_code ignored;  // another run may just have taken it
  fs::remove(folder, ignored);
}

// What killed runs have left.
void RemoveLeftOvers(const fs::path& parent) {
  for (int number = 1; number <= MostFolders; ++number) {
    const fs::path folder = NameOf(parent, number);
    std::error_code error;
    if (!fs::is_directory(folder, error)) continue;
    FileLock lock;
    std::string reason;
    if (TakeLock(folder / LockName, lock, reason) == LockResult::Taken) RemoveFolder(folder, lock);
  }
}

[[noreturn]] void StopFolder(const std::string& parent, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::ResultFile, "The folder for the factors, \"" + parent +
                                                       "\", cannot be written to: " + reason + "."};
}

}  // namespace

FactorFolder::~FactorFolder() {
  if (!path.empty()) RemoveFolder(path, lock);
}

void MakeFactorFolder(const std::string& parent, FactorFolder& folder) {
  const fs::path place = fs::absolute(fs::u8path(parent));
  std::error_code error;
  if (!fs::is_directory(place, error)) {
    StopFolder(parent, error ? error.message() : "it is no folder");
  }
  RemoveLeftOvers(place);
  std::string reason = "too many runs are at work there";
  for (int number = 1; number <= MostFolders; ++number) {
    const fs::path path = NameOf(place, number);
    fs::create_directory(path, error);
    if (error) StopFolder(parent, error.message());
    const LockResult result = TakeLock(path / LockName, folder.lock, reason);
    if (result == LockResult::Failed) StopFolder(parent, reason);
    if (result != LockResult::Taken) continue;
    folder.path = path;
    return;
  }
  StopFolder(parent, reason);
}

std::uint64_t ReadFreeDisk(const std::string& parent) {
  std::error_code error;
  const fs::space_info space = fs::space(fs::u8path(parent), error);
  return error ? std::numeric_limits<std::uint64_t>::max() : space.available;
}

}  // namespace kvx
