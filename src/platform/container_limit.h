// The memory limit of the container that the process runs in (Linux control groups).
//
// A line of the list of groups is "number:controllers:path". Version 2 has one line "0::path"; its
// limit is in "path/memory.max". Version 1 has a line whose controllers include "memory"; its limit
// is in "memory/path/memory.limit_in_bytes".
#pragma once

#include <cstdint>
#include <string>

namespace korvex {

// Returns the smallest limit of the process's groups and their parent groups, in bytes;
// UnknownMemory where no limit is set.
// groupsFile: the list of the process's groups, "/proc/self/cgroup"; root: the folder of all
// groups, "/sys/fs/cgroup".
std::uint64_t ReadContainerLimit(const std::string& groupsFile, const std::string& root);

}  // namespace korvex
