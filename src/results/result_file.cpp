#include "results/result_file.h"

#include <algorithm>

#include "report/check_memory.h"
#include "report/stop.h"
#include "workers/make_in_order.h"

namespace korvex {

namespace {

// Large blocks need fewer write calls than single lines, and 64 kB stay in the cache.
constexpr std::size_t BlockSize = std::size_t{1} << 16U;

// Pieces fit into the block that is written when it is full, and take much longer to make than a
// thread to get the next one.
constexpr std::int64_t PieceSize = BlockSize / 4;

void WriteBlock(ResultFile& file) {
  file.stream.write(file.text.room.data(), static_cast<std::streamsize>(file.text.size));
  file.text.size = 0;
}

// Before the file is opened: without memory none is begun, and errno tells why it did not open.
void ReserveTexts(int threads, ResultFile& file) {
  constexpr std::size_t TextSize = 2 * BlockSize, PieceTextSize = 2 * PieceSize;
  const auto placesEach = static_cast<std::size_t>(CountPlaces(threads) / std::max(threads, 1));
  file.threads = CountThreadsInMemory(threads, TextSize, placesEach * PieceTextSize);
  const auto places = static_cast<std::size_t>(CountPlaces(file.threads));
  AllocateOrStop("the text of " + file.name, TextSize + places * PieceTextSize, 1, [&] {
    file.text.room.resize(TextSize);
    file.pieces.resize(places);
    for (ResultText& piece : file.pieces) piece.room.resize(PieceTextSize);
  });
}

}  // namespace

void OpenResultFile(const std::string& name, const char* failure, ResultFile& file, int threads) {
  file.name = name;
  ReserveTexts(threads, file);
  file.stream.open(name);
  if (!file.stream.is_open()) {
    CheckOpeningMemory();
    throw Stop{StopKind::ResultFile, failure};
  }
}

bool CloseResultFile(ResultFile& file) {
  WriteBlock(file);
  file.stream.close();  // the stream remembers a failure of any earlier block
  return static_cast<bool>(file.stream);
}

// The caller's thread writes: the reason of a failure, errno, is a thread's own.
void AddRows(ResultFile& file, std::int64_t count, std::int64_t rowSize, const AddRow& addRow) {
  const auto make = [&](int place, std::int64_t first, std::int64_t end) {
    ResultText& text = file.pieces[static_cast<std::size_t>(place)];
    text.size = 0;
    for (std::int64_t row = first; row < end; ++row) addRow(row, text);
  };
  const auto take = [&](int place, std::int64_t, std::int64_t) {
    Add(file.text, TextOf(file.pieces[static_cast<std::size_t>(place)]));
    if (file.text.size >= BlockSize) WriteBlock(file);
  };
  MakeInOrder(file.threads, count, std::max<std::int64_t>(PieceSize / rowSize, 1), make, take);
}

}  // namespace korvex
