// GB = count x itemSize / 2^30. A size is compared with the free memory by a division, because the
// product of two counts may need more than 64 bits.
#include "report/check_memory.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "base/gigabyte.h"
#include "base/number_text.h"
#include "platform/free_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

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

bool HasMemory(std::uint64_t count, std::uint64_t itemSize) {
  return count <= SmallSize / itemSize || count <= ReadFreeMemory() / itemSize;
}

int CountThreadsInMemory(int threads, std::uint64_t common, std::uint64_t each) {
  if (threads < 2) return 1;
  const std::uint64_t freeMemory = ReadFreeMemory();
  const std::uint64_t rest = freeMemory - std::min(freeMemory, common + each);
  const std::uint64_t others = rest / (each + ThreadBytes);
  return 1 + static_cast<int>(std::min(others, static_cast<std::uint64_t>(threads) - 1));
}

void CheckMemory(const std::string& what, std::uint64_t count, std::uint64_t itemSize) {
  if (!HasMemory(count, itemSize)) StopOutOfMemory(what, count, itemSize);
}

void CheckOpeningMemory() {
  if (errno == ENOMEM) throw std::bad_alloc();
}

}  // namespace korvex
