// The limits of the container that the process runs in (Linux control groups): its memory, and how
// many cores it may keep busy.
//
// A line of the list of groups is "number:controllers:path". Version 2 has one line "0::path"; its
// limits are in "path/memory.max" and "path/cpu.max", "quota period", in microseconds. Version 1
// has a line whose controllers include "memory", with "memory/path/memory.limit_in_bytes", and one
// with "cpu": "cpu/path/cpu.cfs_quota_us" and "cpu.cfs_period_us".
#pragma once

#include <cstdint>
#include <string>

namespace korvex {

// Returns the smallest limit of the process's groups and their parent groups, in bytes;
// UnknownMemory where no limit is set.
// groupsFile: the list of the process's groups, "/proc/self/cgroup"; root: the folder of all
// groups, "/sys/fs/cgroup".
std::uint64_t ReadContainerLimit(const std::string& groupsFile, const std::string& root);

// Returns the smallest limit of processor time per time, that is of cores: 1.5, say; infinity where
// no limit is set. Arguments as above.
double ReadContainerCores(const std::string& groupsFile, const std::string& root);

// How many of `bound` cores a process does well to use that may take the time of `quota` of them,
// infinity: of all. Halves are rounded up; one at least.
int CountCoresWithin(int bound, double quota);

}  // namespace korvex
