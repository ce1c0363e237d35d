// Windows grants no request beyond its commit limit, so this limit is the memory that is free.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>

#include "platform/free_memory.h"

namespace korvex {

std::uint64_t ReadFreeMemory() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  if (GlobalMemoryStatusEx(&status) == 0) return UnknownMemory;
  return std::min<std::uint64_t>(status.ullAvailPageFile, status.ullAvailVirtual);
}

MemoryBound FindMemoryBound() {
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof status;
  if (GlobalMemoryStatusEx(&status) == 0) return MemoryBound::Machine;
  return status.ullAvailVirtual < status.ullAvailPageFile ? MemoryBound::Addresses
                                                          : MemoryBound::Machine;
}

}  // namespace korvex
