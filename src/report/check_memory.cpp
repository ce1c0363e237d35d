// GB = count x itemSize / 2^30. A size is compared with the free memory by a division, because the
// product of two counts may need more than 64 bits.
#include "report/check_memory.h"

#include <cerrno>
#include <utility>

#include "base/number_text.h"
#include "platform/free_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

constexpr double BytesPerGigabyte = 1073741824.0;  // 2^30

// Smaller requests are not checked: they do not fail, and a run has many of them.
constexpr std::uint64_t SmallSize = std::uint64_t{1} << 20U;

}  // namespace

void StopOutOfMemory(const std::string& what, std::uint64_t count, std::uint64_t itemSize) {
  const double gigabytes =
      static_cast<double>(count) * static_cast<double>(itemSize) / BytesPerGigabyte;
  // No stream: without memory it would cut the text off silently, where a string throws.
  NumberBuffer buffer;
  std::string text = "Not enough memory for " + what + ": ";
  text.append(FormatNumber(gigabytes, buffer)).append(" GB.");
  throw Stop{StopKind::Notice, std::move(text)};
}

void CheckMemory(const std::string& what, std::uint64_t count, std::uint64_t itemSize) {
  if (count <= SmallSize / itemSize) return;
  if (count > ReadFreeMemory() / itemSize) StopOutOfMemory(what, count, itemSize);
}

void CheckOpeningMemory() {
  if (errno == ENOMEM) throw std::bad_alloc();
}

}  // namespace korvex
