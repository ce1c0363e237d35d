#include "engine/locked_folder.h"

#include <system_error>
#include <vector>

namespace kvx {

namespace fs = std::filesystem;

LockResult TakeFolder(const fs::path& folder, FileLock& lock, bool& isNew, std::string& reason) {
  // Each fails only where another process ends at this moment: about half of them do while three
  // do nothing but come and go.
  constexpr int Attempts = 100;
  for (int k = 0; k < Attempts; ++k) {
    std::error_code error;
    isNew = fs::create_directory(folder, error);
    if (error) {
      reason = error.message();
      // A folder that goes before it is looked at "exists", too.
      if (error == std::errc::file_exists) continue;
      return LockResult::Failed;
    }
    const LockResult result = TakeLock(folder / LockName, lock, reason);
    if (result != LockResult::Failed) return result;
    if (isNew) fs::remove(folder, error);
  }
  return LockResult::Failed;
}

void EmptyFolder(const fs::path& folder) {
  std::error_code error;
  std::vector<fs::path> entries;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (it->path().filename() != LockName) entries.push_back(it->path());
  }
  for (const fs::path& entry : entries) fs::remove_all(entry, error);
}

void LeaveFolder(const fs::path& folder, FileLock& lock) {
  if (lock.handle == NoLock) return;
  ReleaseLock(folder / LockName, lock);
  std::error_code ignored;  // not if another process has just begun in it
  fs::remove(folder, ignored);
}

void ReturnFolder(FileLock& lock) { DropLock(lock); }

}  // namespace kvx
