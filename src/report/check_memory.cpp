// GB = count x itemSize / 2^30. A size is compared with the free memory by a division, because the
// product of two counts may need more than 64 bits.
#include "report/check_memory.h"

#include <sstream>

#include "platform/free_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

constexpr double BytesPerGigabyte = 1073741824.0;  // 2^30

// Smaller requests are not checked: they do not fail, and a run has many of them.
constexpr std::uint64_t SmallSize = std::uint64_t{1} << 20U;

}  // namespace

void StopOutOfMemory(const std::string& what, std::uint64_t count, std::uint64_t itemSize) {
  std::ostringstream text;
  text << "Not enough memory for " << what << ": "
       << static_cast<double>(count) * static_cast<double>(itemSize) / BytesPerGigabyte << " GB.";
  throw Stop{StopKind::Notice, text.str()};
}

void CheckMemory(const std::string& what, std::uint64_t count, std::uint64_t itemSize) {
  if (count <= SmallSize / itemSize) return;
  if (count > ReadFreeMemory() / itemSize) StopOutOfMemory(what, count, itemSize);
}

}  // namespace korvex
