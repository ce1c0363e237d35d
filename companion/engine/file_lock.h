// A file that says that a process is at work in its folder.
//
// The system lets the lock go with the process, however that ends: a file that a killed process has
// left holds nobody up. POSIX: flock, which also holds on network file systems of Linux; some file
// systems know no locks. Windows: a file that nobody else can open.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace kvx {

enum class LockResult {
  Taken,
  Unlocked,  // the file is there, but the file system knows no locks: nobody is held up
  Busy,      // another process, or another lock of this one, has it
  Failed,    // the file cannot be made
};

inline constexpr std::intptr_t NoLock = -1;

struct FileLock {
  std::intptr_t handle = NoLock;  // of the system
};

// Makes the file where there is none. reason: the system's words where it failed.
LockResult TakeLock(const std::filesystem::path& file, FileLock& lock, std::string& reason);

// Removes the file and lets it go. Does nothing where it is not taken.
void ReleaseLock(const std::filesystem::path& file, FileLock& lock);

// Lets it go and leaves the file, where the system does not remove it. Does nothing where it is not
// taken.
void DropLock(FileLock& lock);

}  // namespace kvx
