#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string>

#include "platform/container_limit.h"
#include "platform/free_memory.h"

namespace korvex {

namespace {

// The memory that the process has now, in bytes; zeros where the system gives no figure.
struct ProcessSize {
  std::uint64_t addresses = 0;  // reserved, touched or not
  std::uint64_t resident = 0;   // in physical memory
};

ProcessSize ReadProcessSize() {
  ProcessSize pages;
  std::ifstream stream("/proc/self/statm");
  stream >> pages.addresses >> pages.resident;
  const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  return {pages.addresses * pageSize, pages.resident * pageSize};
}

// The kernel's estimate of the memory available without swapping, plus the free swap space, in
// bytes. A line of the file is "MemAvailable:   16000000 kB".
std::uint64_t ReadMachineMemory() {
  std::ifstream stream("/proc/meminfo");
  std::uint64_t sum = 0, kilobytes = 0;
  bool isKnown = false;
  for (std::string name, unit; stream >> name >> kilobytes;) {
    std::getline(stream, unit);
    if (name == "MemAvailable:") isKnown = true;
    if (name == "MemAvailable:" || name == "SwapFree:") sum += kilobytes * 1024;
  }
  return isKnown ? sum : UnknownMemory;
}

std::uint64_t ReadAddressLimit() {
  struct rlimit limit {};
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return UnknownMemory;
  return limit.rlim_cur;
}

std::uint64_t Remainder(std::uint64_t limit, std::uint64_t used) {
  if (limit == UnknownMemory) return UnknownMemory;
  return limit > used ? limit - used : 0;
}

struct FreeValues {
  std::uint64_t machine = UnknownMemory, container = UnknownMemory, addresses = UnknownMemory;
};

FreeValues ReadFreeValues() {
  const ProcessSize size = ReadProcessSize();
  return {ReadMachineMemory(),
          Remainder(ReadContainerLimit("/proc/self/cgroup", "/sys/fs/cgroup"), size.resident),
          Remainder(ReadAddressLimit(), size.addresses)};
}

}  // namespace

std::uint64_t ReadFreeMemory() {
  const FreeValues free = ReadFreeValues();
  return std::min({free.machine, free.container, free.addresses});
}

MemoryBound FindMemoryBound() {
  const FreeValues free = ReadFreeValues();
  if (free.machine <= std::min(free.container, free.addresses)) return MemoryBound::Machine;
  return free.container <= free.addresses ? MemoryBound::Container : MemoryBound::Addresses;
}

}  // namespace korvex
