// The pipe has the name /dev/fd/N. This process keeps its own writing end open until `write` has
// returned: so the reader sees the end of the bytes only then, also if nothing was ever opened.
#include <unistd.h>

#include <array>
#include <cerrno>
#include <functional>
#include <string>
#include <system_error>
#include <thread>

#include "audit/written_bytes.h"

namespace kvx {

namespace {

constexpr std::size_t BlockSize = std::size_t{1} << 16U;  // what a pipe holds

struct Pipe {
  int reading = -1, writing = -1;
};

bool OpenPipe(Pipe& ends) {
  std::array<int, 2> both{};
  if (pipe(both.data()) != 0) return false;
  ends = {both[0], both[1]};
  return true;
}

std::string NameOf(int descriptor) { return "/dev/fd/" + std::to_string(descriptor); }

// Takes all bytes up to the end. isWhole: false where reading failed.
void TakeAll(int reading, const TakeBytes& take, bool& isWhole) {
  std::array<char, BlockSize> block;
  for (;;) {
    const ssize_t count = read(reading, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    isWhole = count == 0;
    if (count <= 0) return;
    take(block.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

bool TakeWrittenBytes(const FileWriter& write, const TakeBytes& take) {
  Pipe ends;
  if (!OpenPipe(ends)) return TakeBytesOfTemporaryFile(write, take);
  if (access(NameOf(ends.writing).c_str(), W_OK) != 0) {
    close(ends.reading);
    close(ends.writing);
    return TakeBytesOfTemporaryFile(write, take);
  }
  bool isRead = false;
  std::thread reader;
  try {
    reader = std::thread(TakeAll, ends.reading, std::cref(take), std::ref(isRead));
  } catch (const std::system_error&) {  // the system gives no further thread
    close(ends.reading);
    close(ends.writing);
    return TakeBytesOfTemporaryFile(write, take);
  }
  const auto finish = [&] {
    close(ends.writing);
    reader.join();
    close(ends.reading);
  };
  bool isWritten = false;
  try {
    isWritten = write(NameOf(ends.writing));
  } catch (...) {
    finish();
    throw;
  }
  finish();
  return isWritten && isRead;
}

}  // namespace kvx
