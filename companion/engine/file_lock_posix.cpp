#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "engine/file_lock.h"

namespace kvx {

namespace {

constexpr mode_t AnyoneMayWrite = 0666;  // less what the user's mask takes away

// Whether the open file still has this name: who had it before may just have removed it.
bool HasName(int descriptor, const std::filesystem::path& file) {
  struct stat open {
  }, named{};
  return fstat(descriptor, &open) == 0 && stat(file.c_str(), &named) == 0 &&
         open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

}  // namespace

LockResult TakeLock(const std::filesystem::path& file, FileLock& lock, std::string& reason) {
  constexpr int Attempts = 8;  // each fails only where another process ends at this moment
  for (int k = 0; k < Attempts; ++k) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system's interface
    const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, AnyoneMayWrite);
    if (descriptor < 0) {
      reason = std::generic_category().message(errno);
      return LockResult::Failed;
    }
    const bool isLocked = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    const bool isBusy = !isLocked && errno == EWOULDBLOCK;
    if (!isBusy && HasName(descriptor, file)) {
      lock.handle = descriptor;
      return isLocked ? LockResult::Taken : LockResult::Unlocked;
    }
    close(descriptor);
    if (isBusy) return LockResult::Busy;
  }
  return LockResult::Busy;
}

void ReleaseLock(const std::filesystem::path& file, FileLock& lock) {
  if (lock.handle == NoLock) return;
  unlink(file.c_str());
  DropLock(lock);
}

void DropLock(FileLock& lock) {
  if (lock.handle == NoLock) return;
  close(static_cast<int>(lock.handle));
  lock.handle = NoLock;
}

}  // namespace kvx
