// The process's set of cores, of the 64 of its group at most.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <bitset>

#include "platform/usable_cores.h"

namespace korvex {

int CountUsableCores() {
  DWORD_PTR process = 0, machine = 0;
  if (GetProcessAffinityMask(GetCurrentProcess(), &process, &machine) == 0) return 1;
  return std::max(static_cast<int>(std::bitset<64>(process).count()), 1);
}

}  // namespace korvex
