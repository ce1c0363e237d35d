#include "results/result_file.h"

#include <algorithm>

#include "base/number_text.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "workers/make_in_order.h"

namespace korvex {

namespace {

constexpr std::size_t ColumnWidth = 15;

void AddRightAligned(std::string& text, std::string_view item, std::size_t width) {
  if (item.size() < width) text.append(width - item.size(), ' ');
  text.append(item);
}

// Large blocks need fewer write calls than single lines, and 64 kB stay in the cache.
constexpr std::size_t BlockSize = std::size_t{1} << 16U;

// Pieces fit into the block that is written when it is full, and take much longer to make than a
// thread to get the next one.
constexpr std::int64_t PieceSize = BlockSize / 4;

void WriteBlock(ResultFile& file) {
  file.stream.write(file.text.data(), static_cast<std::streamsize>(file.text.size()));
  file.text.clear();
}

// Before the file is opened: without memory none is begun, and errno tells why it did not open.
void ReserveTexts(int threads, ResultFile& file) {
  constexpr std::size_t TextSize = 2 * BlockSize, PieceTextSize = 2 * PieceSize;
  const auto placesEach = static_cast<std::size_t>(CountPlaces(threads) / std::max(threads, 1));
  file.threads = CountThreadsInMemory(threads, TextSize, placesEach * PieceTextSize);
  const auto places = static_cast<std::size_t>(CountPlaces(file.threads));
  AllocateOrStop("the text of " + file.name, TextSize + places * PieceTextSize, 1, [&] {
    file.text.reserve(TextSize);
    file.pieces.resize(places);
    for (std::string& piece : file.pieces) piece.reserve(PieceTextSize);
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
    std::string& text = file.pieces[static_cast<std::size_t>(place)];
    text.clear();
    for (std::int64_t row = first; row < end; ++row) addRow(row, text);
  };
  const auto take = [&](int place, std::int64_t, std::int64_t) {
    file.text.append(file.pieces[static_cast<std::size_t>(place)]);
    if (file.text.size() >= BlockSize) WriteBlock(file);
  };
  MakeInOrder(file.threads, count, std::max<std::int64_t>(PieceSize / rowSize, 1), make, take);
}

void Add(std::string& text, std::string_view item) { text.append(item); }

void Add(std::string& text, char character) { text.push_back(character); }

void Add(std::string& text, std::int64_t number) {
  NumberBuffer buffer;
  text.append(FormatNumber(number, buffer));
}

void Add(std::string& text, double number) {
  NumberBuffer buffer;
  text.append(FormatNumber(number, buffer));
}

void AddColumn(std::string& text, double number) {
  NumberBuffer buffer;
  AddRightAligned(text, FormatNumber(number, buffer), ColumnWidth);
}

void AddNodeColumn(std::string& text, std::int32_t node) {
  NumberBuffer buffer;
  AddRightAligned(text, FormatNumber(static_cast<std::int64_t>(node), buffer), ColumnWidth - 1);
  text.push_back(':');
}

void AddTitles(std::string& text, std::initializer_list<std::string_view> titles) {
  for (const std::string_view title : titles) AddRightAligned(text, title, ColumnWidth);
  Add(text, '\n');
}

}  // namespace korvex
