// The memory limit of the container that the process runs in (Linux control groups).
#pragma once

#include <cstdint>
#include <string>

namespace korvex {

// The smallest limit of the process's groups and of those around them, in bytes; UnknownMemory
// where none is set. groupsFile: the list of the process's groups, "/proc/self/cgroup"; root: where
// the groups' folders begin, "/sys/fs/cgroup". Version 1 and version 2 groups are looked at.
std::uint64_t ReadContainerLimit(const std::string& groupsFile, const std::string& root);

}  // namespace korvex
