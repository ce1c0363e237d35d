// A folder that one process has for itself while it works, with a lock in it (file_lock.h).
#pragma once

#include <filesystem>
#include <string>

#include "engine/file_lock.h"

namespace kvx {

// The name of the lock.
inline constexpr const char* LockName = "lock";

// Makes the folder where there is none, and takes its lock; where another process that ends removes
// it in between, again. Where that fails the folder is not left behind. isNew: this call has made
// it. reason: why it failed, in the system's words.
LockResult TakeFolder(const std::filesystem::path& folder, FileLock& lock, bool& isNew,
                      std::string& reason);

// Removes all that is in the folder but the lock, as far as that is possible.
void EmptyFolder(const std::filesystem::path& folder);

// Lets the lock go and removes the folder, but not if anything is in it. Does nothing where the
// lock was not taken.
void LeaveFolder(const std::filesystem::path& folder, FileLock& lock);

// Lets the lock go, and leaves everything.
void ReturnFolder(FileLock& lock);

}  // namespace kvx
