// A file that says that a process is at work in its folder.
//
// The system lets the lock go with the process, however that ends: a file that a killed process has
// left holds nobody up. POSIX: flock, which also holds on network file systems of Linux; where a
// file system knows no locks, there is none. Windows: a file that nobody else can open.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace kvx {

enum class LockResult {
  Taken,
  Busy,    // another process, or another lock of this one, has it
  Failed,  // the file cannot be made
};

struct FileLock {
  std::intptr_t handle = -1;  // of the system; -1: not taken
};

// Makes the file where there is none. reason: the system's words where it failed.
LockResult TakeLock(const std::filesystem::path& file, FileLock& lock, std::string& reason);

// Removes the file and lets it go. Does nothing where it is not taken.
void ReleaseLock(const std::filesystem::path& file, FileLock& lock);

}  // namespace kvx
