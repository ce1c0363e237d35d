#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <system_error>

#include "engine/file_lock.h"

namespace kvx {

LockResult TakeLock(const std::filesystem::path& file, FileLock& lock, std::string& reason) {
  constexpr DWORD SharedWithNobody = 0;
  const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, SharedWithNobody, nullptr,
                                    OPEN_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (handle != INVALID_HANDLE_VALUE) {
    lock.handle = reinterpret_cast<std::intptr_t>(handle);
    return LockResult::Taken;
  }
  const DWORD error = GetLastError();
  if (error == ERROR_SHARING_VIOLATION) return LockResult::Busy;
  reason = std::system_category().message(static_cast<int>(error));
  return LockResult::Failed;
}

// The system removes the file.
void ReleaseLock(const std::filesystem::path& /*file*/, FileLock& lock) { DropLock(lock); }

void DropLock(FileLock& lock) {
  if (lock.handle == NoLock) return;
  CloseHandle(reinterpret_cast<HANDLE>(lock.handle));
  lock.handle = NoLock;
}

}  // namespace kvx
